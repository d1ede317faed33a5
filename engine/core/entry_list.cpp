#include "engine/core/entry_list.h"

#include <algorithm>
#include <bit>

#include "engine/core/entry_storage.h"
#include "platform/number_text.h"

namespace kavor {

FieldValue FieldValue::makeText(ValueKind kind, std::string_view text) {
  FieldValue v;
  v.kind_ = kind;
  v.text_ = text;
  return v;
}
FieldValue FieldValue::makeInteger(int64_t x) {
  FieldValue v;
  v.kind_ = ValueKind::integer;
  v.i_ = x;
  return v;
}
FieldValue FieldValue::makeUnsigned(uint64_t x) {
  FieldValue v;
  v.kind_ = ValueKind::unsignedInteger;
  v.u_ = x;
  return v;
}
FieldValue FieldValue::makeReal(double x) {
  FieldValue v;
  v.kind_ = ValueKind::real;
  v.d_ = x;
  return v;
}
FieldValue FieldValue::makeBoolean(bool x) {
  FieldValue v;
  v.kind_ = ValueKind::boolean;
  v.i_ = x ? 1 : 0;
  return v;
}
FieldValue FieldValue::makeNull() {
  FieldValue v;
  v.kind_ = ValueKind::null;
  return v;
}

void FieldValue::appendPlainText(std::string& out) const {
  switch (kind_) {
    case ValueKind::absent:
      break;
    case ValueKind::text:
    case ValueKind::other:
      out += text_;
      break;
    case ValueKind::integer:
      out += std::to_string(i_);
      break;
    case ValueKind::unsignedInteger:
      out += std::to_string(u_);
      break;
    case ValueKind::real:
      out += shortestDoubleText(d_);
      break;
    case ValueKind::null:
      out += "null";
      break;
    case ValueKind::boolean:
      out += i_ ? "true" : "false";
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
  if (!storage_) return false;
  const auto& nr = storage_->nonRecords;
  return !std::binary_search(nr.begin(), nr.end(), index);
}

FieldValue EntryList::value(size_t index, EntryKey key) const {
  if (index >= count_) return {};
  const uint64_t cell = storage_->cells.row(index)[static_cast<int>(key)];
  const TextArena& arena = storage_->arena;
  switch (cells::tagOf(cell)) {
    case cells::kText:
      return FieldValue::makeText(ValueKind::text, arena.text(cells::payloadOf(cell)));
    case cells::kOther:
      return FieldValue::makeText(ValueKind::other, arena.text(cells::payloadOf(cell)));
    case cells::kSmallInt:
      return FieldValue::makeInteger(cells::smallIntOf(cell));
    case cells::kInt64:
      return FieldValue::makeInteger(static_cast<int64_t>(arena.word(cells::payloadOf(cell))));
    case cells::kUInt64:
      return FieldValue::makeUnsigned(arena.word(cells::payloadOf(cell)));
    case cells::kReal:
      return FieldValue::makeReal(std::bit_cast<double>(arena.word(cells::payloadOf(cell))));
    case cells::kNull:
      return FieldValue::makeNull();
    case cells::kBool:
      return FieldValue::makeBoolean(cells::payloadOf(cell) != 0);
    case cells::kAbsent:
    default:
      return {};
  }
}

size_t EntryList::memoryBytes() const {
  if (!storage_) return sizeof(*this);
  return sizeof(*this) + sizeof(Storage) + count_ * kEntryKeyCount * sizeof(uint64_t) +
         storage_->arena.usedBytes() + storage_->interner.memoryBytes() +
         storage_->nonRecords.capacity() * sizeof(size_t);
}

}  // namespace kavor
