#include "engine/core/entry_key.h"

#include <cstddef>

namespace kavor {

namespace {

// Called for every key of every decoded entry, so one hash and one comparison decide. The hash
// mixes the length, the first and the next-to-last character; the table below is checked at
// compile time to give every kept key a slot of its own.
constexpr size_t kSlots = 64;
constexpr uint8_t kNoKey = 0xff;
constexpr size_t kShortest = 6;  // "source"
constexpr size_t kLongest = 24;  // "parentActivityIdentifier"

constexpr size_t slotOf(std::string_view name) {
  return (name.size() + 24u * static_cast<unsigned char>(name[0]) +
          15u * static_cast<unsigned char>(name[name.size() - 2])) &
         (kSlots - 1);
}

struct SlotTable {
  std::array<uint8_t, kSlots> key{};
  bool collisionFree = true;
};

constexpr SlotTable makeSlotTable() {
  SlotTable t;
  for (auto& k : t.key)
    k = kNoKey;
  for (int i = 0; i < kEntryKeyCount; ++i) {
    const size_t s = slotOf(kEntryKeyNames[i]);
    if (t.key[s] != kNoKey) t.collisionFree = false;
    t.key[s] = static_cast<uint8_t>(i);
  }
  return t;
}

constexpr SlotTable kSlotTable = makeSlotTable();
static_assert(kSlotTable.collisionFree, "two entry keys share a hash slot; change slotOf");

constexpr bool lengthsInRange() {
  for (std::string_view n : kEntryKeyNames)
    if (n.size() < kShortest || n.size() > kLongest) return false;
  return true;
}
static_assert(lengthsInRange());

}  // namespace

std::optional<EntryKey> entryKeyFromName(std::string_view name) {
  if (name.size() < kShortest || name.size() > kLongest) return std::nullopt;
  const uint8_t k = kSlotTable.key[slotOf(name)];
  if (k == kNoKey || kEntryKeyNames[k] != name) return std::nullopt;
  return static_cast<EntryKey>(k);
}

}  // namespace kavor
