#include "engine/core/field_table.h"

#include <array>

namespace kavor {

namespace {

// Suffixes of the field list lines that mark how a field is read.
constexpr std::string_view kNumberSuffix = " no.";
constexpr std::string_view kNullSuffix = " (null)";

constexpr FieldKind kindOf(EntryKey key) {
  switch (key) {
    case EntryKey::machTimestamp:
    case EntryKey::processUniqueID:
    case EntryKey::threadID:
    case EntryKey::traceID:
    case EntryKey::senderProgramCounter:
    case EntryKey::processID:
    case EntryKey::activityIdentifier:
    case EntryKey::parentActivityIdentifier:
    case EntryKey::creatorActivityID:
    case EntryKey::signpostID:
      return FieldKind::number;
    case EntryKey::source:
      return FieldKind::null;
    default:
      return FieldKind::text;
  }
}

constexpr std::array<Field, kFieldKeyCount> makeFullTable() {
  std::array<Field, kFieldKeyCount> t{};
  for (int i = 0; i < kFieldKeyCount; ++i) {
    const auto key = static_cast<EntryKey>(i);
    t[i] = Field{key, kindOf(key)};
  }
  return t;
}

constexpr int kFieldsFrom14 = kFieldKeyCount;
constexpr int kFieldsOf13 = 22;
constexpr int kFieldsBefore13 = 16;

// 10.13 prints the keys up to "signpostID", then "source".
constexpr std::array<Field, kFieldsOf13> makeTableOf13() {
  std::array<Field, kFieldsOf13> t{};
  const auto full = makeFullTable();
  for (int i = 0; i < kFieldsOf13 - 1; ++i)
    t[i] = full[i];
  t[kFieldsOf13 - 1] = Field{EntryKey::source, FieldKind::null};
  return t;
}

constexpr std::array<Field, kFieldsFrom14> kFullTable = makeFullTable();
constexpr std::array<Field, kFieldsOf13> kTableOf13 = makeTableOf13();

}  // namespace

std::span<const Field> fieldTable(int osVersion) {
  if (osVersion >= 14) return kFullTable;
  if (osVersion == 13) return kTableOf13;
  return std::span<const Field>(kFullTable).first(kFieldsBefore13);
}

int highestFieldNumber(int osVersion) {
  return static_cast<int>(fieldTable(osVersion).size()) - 1;
}

std::string fieldListLine(int number, const Field& field) {
  std::string line = std::to_string(number);
  line += ' ';
  line += entryKeyName(field.key);
  if (field.kind == FieldKind::number) line += kNumberSuffix;
  if (field.kind == FieldKind::null) line += kNullSuffix;
  return line;
}

std::vector<std::string> fieldListLines(int osVersion) {
  const auto table = fieldTable(osVersion);
  std::vector<std::string> lines;
  lines.reserve(table.size());
  for (size_t n = 0; n < table.size(); ++n)
    lines.push_back(fieldListLine(static_cast<int>(n), table[n]));
  return lines;
}

int fieldWindowGrowth(int osVersion) {
  if (osVersion == 13) return 100;
  if (osVersion == 14) return 170;
  return 0;
}

}  // namespace kavor
