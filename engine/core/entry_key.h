#pragma once
// The keys of a log entry that Kavor keeps, numbered as in the full field table (26 fields).

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kavor {

enum class EntryKey : uint8_t {
  timestamp,
  machTimestamp,
  messageType,
  category,
  subsystem,
  processUniqueID,
  threadID,
  traceID,
  senderProgramCounter,
  processID,
  eventMessage,
  processImagePath,
  processImageUUID,
  senderImagePath,
  senderImageUUID,
  timezoneName,
  eventType,
  activityIdentifier,
  parentActivityIdentifier,
  creatorActivityID,
  signpostID,
  signpostName,
  signpostType,
  signpostScope,
  formatString,
  source,
  // Kept for the entry's details only.
  backtrace,
  bootUUID,
  userID,
};

inline constexpr int kEntryKeyCount = 29;
// The keys before backtrace are the fields: numbered in the style language and CSV columns.
inline constexpr int kFieldKeyCount = static_cast<int>(EntryKey::backtrace);

// The JSON key the log tool prints for each EntryKey, in EntryKey order.
inline constexpr std::array<std::string_view, kEntryKeyCount> kEntryKeyNames = {
    "timestamp",
    "machTimestamp",
    "messageType",
    "category",
    "subsystem",
    "processUniqueID",
    "threadID",
    "traceID",
    "senderProgramCounter",
    "processID",
    "eventMessage",
    "processImagePath",
    "processImageUUID",
    "senderImagePath",
    "senderImageUUID",
    "timezoneName",
    "eventType",
    "activityIdentifier",
    "parentActivityIdentifier",
    "creatorActivityID",
    "signpostID",
    "signpostName",
    "signpostType",
    "signpostScope",
    "formatString",
    "source",
    "backtrace",
    "bootUUID",
    "userID",
};

constexpr std::string_view entryKeyName(EntryKey key) {
  return kEntryKeyNames[static_cast<int>(key)];
}

// The EntryKey of a JSON key, or none for keys Kavor does not keep.
std::optional<EntryKey> entryKeyFromName(std::string_view name);

}  // namespace kavor
