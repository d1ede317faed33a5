#include "engine/core/entry_list_builder.h"

#include <array>
#include <bit>

#include "engine/core/entry_storage.h"

namespace kavor {

namespace {

// Texts that repeat from entry to entry are kept once; timestamps and messages rarely repeat,
// so looking them up would only cost time.
constexpr std::array<bool, kEntryKeyCount> kInterned = [] {
  std::array<bool, kEntryKeyCount> a{};
  a.fill(true);
  a[static_cast<int>(EntryKey::timestamp)] = false;
  a[static_cast<int>(EntryKey::eventMessage)] = false;
  return a;
}();

}  // namespace

EntryListBuilder::EntryListBuilder() {
  list_.storage_ = std::make_unique<EntryList::Storage>();
}
EntryListBuilder::~EntryListBuilder() = default;

void EntryListBuilder::beginRecord() {
  row_ = list_.storage_->cells.append(list_.count_++);
}

void EntryListBuilder::addNonRecord() {
  list_.storage_->cells.append(list_.count_);
  list_.storage_->nonRecords.push_back(list_.count_++);
  row_ = nullptr;
}

void EntryListBuilder::setText(EntryKey key, std::string_view text) {
  auto& s = *list_.storage_;
  const uint64_t ref =
      kInterned[static_cast<int>(key)] ? s.interner.intern(text) : s.arena.addText(text);
  cell(key) = cells::make(cells::kText, ref);
}

void EntryListBuilder::setInteger(EntryKey key, int64_t v) {
  if (v >= cells::kSmallMin && v <= cells::kSmallMax) {
    cell(key) = cells::make(cells::kSmallInt, static_cast<uint64_t>(v) & cells::kPayloadMask);
  } else {
    cell(key) = cells::make(cells::kInt64, list_.storage_->arena.addWord(static_cast<uint64_t>(v)));
  }
}

void EntryListBuilder::setUnsigned(EntryKey key, uint64_t v) {
  if (v <= static_cast<uint64_t>(cells::kSmallMax)) {
    cell(key) = cells::make(cells::kSmallInt, v);
  } else {
    cell(key) = cells::make(cells::kUInt64, list_.storage_->arena.addWord(v));
  }
}

void EntryListBuilder::setReal(EntryKey key, double v) {
  cell(key) = cells::make(cells::kReal, list_.storage_->arena.addWord(std::bit_cast<uint64_t>(v)));
}

void EntryListBuilder::setBoolean(EntryKey key, bool v) {
  cell(key) = cells::make(cells::kBool, v ? 1 : 0);
}

void EntryListBuilder::setNull(EntryKey key) {
  cell(key) = cells::make(cells::kNull, 0);
}

void EntryListBuilder::setOther(EntryKey key, std::string_view json) {
  cell(key) = cells::make(cells::kOther, list_.storage_->interner.intern(json));
}

EntryList EntryListBuilder::finish() {
  EntryList out = std::move(list_);
  list_.storage_ = std::make_unique<EntryList::Storage>();
  list_.count_ = 0;
  row_ = nullptr;
  return out;
}

void EntryListBuilder::discard() noexcept {
  list_ = EntryList();
  row_ = nullptr;
}

}  // namespace kavor
