#include "engine/core/entry_list.h"

#include <algorithm>

#include "engine/core/entry_storage.h"
#include "platform/number_text.h"

namespace kavor {

void FieldValue::appendPlainText(std::string& out) const {
  switch (kind_) {
    case ValueKind::absent:
      break;
    case ValueKind::text:
    case ValueKind::other:
      out += text_;
      break;
    case ValueKind::integer:
      out += std::to_string(integer());
      break;
    case ValueKind::unsignedInteger:
      out += std::to_string(unsignedInteger());
      break;
    case ValueKind::real:
      out += shortestDoubleText(real());
      break;
    case ValueKind::null:
      out += "null";
      break;
    case ValueKind::boolean:
      out += boolean() ? "true" : "false";
      break;
  }
}

std::string FieldValue::plainText() const {
  std::string s;
  appendPlainText(s);
  return s;
}

EntryList::EntryList() = default;
EntryList::~EntryList() = default;
EntryList::EntryList(EntryList&&) noexcept = default;
EntryList& EntryList::operator=(EntryList&&) noexcept = default;

bool EntryList::isRecord(size_t index) const {
  if (index >= count_) return false;
  const auto& nr = storage_->nonRecords;
  return !std::binary_search(nr.begin(), nr.end(), index);
}

FieldValue EntryList::value(size_t index, EntryKey key) const {
  if (index >= count_) return {};
  const uint64_t cell = storage_->cells.row(index)[static_cast<int>(key)];
  const TextArena& arena = storage_->arena;
  const uint64_t payload = cells::payloadOf(cell);
  switch (cells::tagOf(cell)) {
    case cells::kText:
      return {ValueKind::text, arena.text(payload)};
    case cells::kOther:
      return {ValueKind::other, arena.text(payload)};
    case cells::kSmallInt:
      return {ValueKind::integer, static_cast<uint64_t>(cells::smallIntOf(cell))};
    case cells::kInt64:
      return {ValueKind::integer, arena.word(payload)};
    case cells::kUInt64:
      return {ValueKind::unsignedInteger, arena.word(payload)};
    case cells::kReal:
      return {ValueKind::real, arena.word(payload)};
    case cells::kNull:
      return {ValueKind::null, uint64_t{0}};
    case cells::kBool:
      return {ValueKind::boolean, payload};
    case cells::kAbsent:
    default:
      return {};
  }
}

std::span<const TextTally> EntryList::eventTypeTally() const {
  if (!storage_) return {};
  Storage& s = *storage_;
  std::call_once(s.eventTypesTallied, [&] {
    // Interned texts share their reference, so the few types are told apart by it; texts that
    // were not interned are merged by their bytes after.
    std::vector<std::pair<uint64_t, size_t>> byReference;
    for (size_t i = 0; i < count_; ++i) {
      const uint64_t cell = s.cells.row(i)[static_cast<int>(EntryKey::eventType)];
      if (cells::tagOf(cell) != cells::kText) continue;
      const uint64_t reference = cells::payloadOf(cell);
      auto seen = std::find_if(byReference.begin(), byReference.end(),
                               [&](const auto& r) { return r.first == reference; });
      if (seen == byReference.end())
        byReference.emplace_back(reference, 1);
      else
        ++seen->second;
    }
    for (const auto& [reference, count] : byReference) {
      const std::string_view text = s.arena.text(reference);
      auto same = std::find_if(s.eventTypes.begin(), s.eventTypes.end(),
                               [&](const TextTally& t) { return t.text == text; });
      if (same == s.eventTypes.end())
        s.eventTypes.push_back({text, count});
      else
        same->count += count;
    }
  });
  return s.eventTypes;
}

size_t EntryList::memoryBytes() const {
  if (!storage_) return sizeof(*this);
  return sizeof(*this) + sizeof(Storage) + count_ * kEntryKeyCount * sizeof(uint64_t) +
         storage_->arena.usedBytes() + storage_->interner.memoryBytes() +
         storage_->nonRecords.capacity() * sizeof(size_t);
}

}  // namespace kavor
