// Feeds arbitrary bytes to the import of a lists file, in both modes, and stores what it accepts
// in a settings store in memory: the stored lists must read back as imported, and the lists must
// export and import back unchanged.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "engine/query/exchange_file.h"
#include "engine/query/settings_commit.h"
#include "platform/settings_store.h"

namespace {

const kavor::PrefsLists& current() {
  static const kavor::PrefsLists lists = {
      {{"none", ""}, {"X", "a"}}, {{"none", "0h 4 10"}}, {{"none", ""}, {"error", "error"}}};
  return lists;
}

void check(const kavor::PrefsLists& lists) {
  kavor::MemorySettingsStore store;
  const kavor::PlistDict values = {{"p", kavor::namedListToPlist(lists.predicates)},
                                   {"s", kavor::namedListToPlist(lists.styles)},
                                   {"f", kavor::namedListToPlist(lists.filters)}};
  if (!kavor::writeAllOrNothing(store, values)) __builtin_trap();
  if (store.namedList("p").list != lists.predicates || store.namedList("s").list != lists.styles ||
      store.namedList("f").list != lists.filters)
    __builtin_trap();
  const auto again =
      kavor::importedLists(kavor::exchangeFileBytes(lists), current(), kavor::ImportMode::replace);
  if (!again || !*again || **again != lists) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  for (const auto mode : {kavor::ImportMode::replace, kavor::ImportMode::merge}) {
    const auto imported = kavor::importedLists(bytes, current(), mode);
    if (imported && *imported) check(**imported);
  }
  return 0;
}
