#include "engine/query/named_lists.h"

#include "engine/query/settings_texts.h"

namespace kavor {

namespace {

template <size_t N>
NamedList listOf(const std::array<ListEntryText, N>& texts) {
  NamedList list;
  list.reserve(N);
  for (const ListEntryText& e : texts)
    list.push_back(ListEntry{std::string(e.name), std::string(e.text)});
  return list;
}

}  // namespace

NamedList initialNamedList() {
  return {ListEntry{std::string(kNoneName), ""}};
}

NamedList factoryPredicateList() {
  return listOf(kFactoryPredicates);
}

NamedList factoryFilterList() {
  NamedList list = initialNamedList();
  for (size_t i = 1; i < kFactoryFilterNames.size(); ++i) {
    const std::string name(kFactoryFilterNames[i]);
    list.push_back(ListEntry{name, name});
  }
  return list;
}

NamedList factoryStyleList(int osVersion) {
  NamedList list = listOf(kFactoryStyles);
  if (osVersion < kFirstSignpostOsVersion) {
    for (ListEntry& e : list)
      if (e.name == kStartersStyleName) e.text = kStartersStyleBefore13;
  }
  return list;
}

NamedList factoryList(std::string_view listKey, int osVersion) {
  if (listKey == kSpecStyleListKey) return factoryStyleList(osVersion);
  if (listKey == kSpecFiltListKey) return factoryFilterList();
  return factoryPredicateList();
}

std::string selectedListText(const ComboBoxModel& box, const NamedList& list) {
  const int64_t i = box.selectedIndex();
  if (i < 0) return box.displayedString();
  // The box's rows and the list normally match; a row past either end has no text.
  if (i < box.rowCount() && static_cast<size_t>(i) < list.size())
    return list[static_cast<size_t>(i)].text;
  return {};
}

}  // namespace kavor
