// Placeholder while the decoder lands; replaced by the real storage.
#include "engine/core/entry_list.h"

namespace kavor {
struct EntryList::Storage {};
EntryList::EntryList() = default;
EntryList::~EntryList() = default;
EntryList::EntryList(EntryList&&) noexcept = default;
EntryList& EntryList::operator=(EntryList&&) noexcept = default;
bool EntryList::isRecord(size_t) const { return true; }
FieldValue EntryList::value(size_t, EntryKey) const { return {}; }
size_t EntryList::memoryBytes() const { return 0; }
}  // namespace kavor
