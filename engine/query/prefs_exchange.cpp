#include "engine/query/prefs_exchange.h"

#include <string>
#include <utility>

#include "engine/query/main_settings_store.h"
#include "engine/query/named_lists.h"
#include "engine/query/settings_commit.h"
#include "engine/query/settings_texts.h"

namespace kavor {

namespace {

PrefsLists factoryLists(int osVersion) {
  return {factoryPredicateList(), factoryStyleList(osVersion), factoryFilterList()};
}

// The keys in the order the window stores its lists.
void setLists(PlistValue& values, const PrefsLists& lists) {
  values.set(kSpecPredListKey, namedListToPlist(lists.predicates));
  values.set(kSpecFiltListKey, namedListToPlist(lists.filters));
  values.set(kSpecStyleListKey, namedListToPlist(lists.styles));
}

// The store's reason alone: the context of its error names a temporary file.
Error notStored(const SettingsStore& store, const Error& error) {
  std::string text = "Couldn't store the imported lists";
  if (!store.location().empty())
    text += " in the settings file \"" + store.location().string() + "\"";
  return Error{ErrorKind::io, text + " (" + error.reason() + ")."};
}

Expected<bool> storeImport(SettingsStore& store, PlistValue values) {
  const Status written = writeAllOrNothing(store, *values.get<PlistDict>());
  if (!written) return notStored(store, written.error());
  return true;
}

NamedList listOrStandIn(const SettingsStore& store, std::string_view key, int osVersion) {
  NamedListRead read = store.namedList(key);
  if (read.status == NamedListRead::Status::ok) return std::move(read.list);
  if (read.status == NamedListRead::Status::corrupt) return factoryList(key, osVersion);
  return initialNamedList();
}

ImportMode modeOf(const MainSettings& settings) {
  return settings.theReplaceOnImport ? ImportMode::replace : ImportMode::merge;
}

}  // namespace

PrefsLists listsOf(const MainSettings& settings) {
  return {settings.specPredList, settings.specStyleList, settings.specFiltList};
}

Expected<bool> importPrefs(MainSettings& settings, SettingsStore& store,
                           const std::filesystem::path& file) {
  auto imported = importedListsFromFile(file, listsOf(settings), modeOf(settings));
  if (!imported) return imported.error();
  if (!*imported) return false;
  PrefsLists& lists = **imported;
  PlistValue values{PlistDict{}};
  setLists(values, lists);
  if (auto stored = storeImport(store, std::move(values)); !stored) return stored;

  settings.specPredList = std::move(lists.predicates);
  settings.specStyleList = std::move(lists.styles);
  settings.specFiltList = std::move(lists.filters);
  // Every window reloads with its stored selections; this one then shows row 0 of each list.
  store.notifications().post(kCustomsChanged);
  showListsAtRowZero(settings);
  return true;
}

PrefsLists listsInStore(const SettingsStore& store, int osVersion) {
  if (storeNeedsFactorySettings(store)) return factoryLists(osVersion);
  return {listOrStandIn(store, kSpecPredListKey, osVersion),
          listOrStandIn(store, kSpecStyleListKey, osVersion),
          listOrStandIn(store, kSpecFiltListKey, osVersion)};
}

bool listsInStoreNeedOsVersion(const SettingsStore& store) {
  const NamedListRead styles = store.namedList(kSpecStyleListKey);
  return styles.status != NamedListRead::Status::ok || styles.list.empty();
}

Expected<bool> importPrefsIntoStore(SettingsStore& store, const std::filesystem::path& file,
                                    ImportMode mode, int osVersion) {
  auto imported = importedListsFromFile(file, listsInStore(store, osVersion), mode);
  if (!imported) return imported.error();
  if (!*imported) return false;
  PlistValue values{storeNeedsFactorySettings(store) ? factorySettingValues(osVersion)
                                                     : PlistDict{}};
  setLists(values, **imported);
  if (auto stored = storeImport(store, std::move(values)); !stored) return stored;
  store.notifications().post(kCustomsChanged);
  return true;
}

}  // namespace kavor
