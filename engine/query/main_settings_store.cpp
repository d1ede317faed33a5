#include "engine/query/main_settings_store.h"

#include <algorithm>
#include <array>
#include <tuple>
#include <utility>

namespace kavor {

namespace {

bool hasSignposts(const MainSettings& settings) {
  return settings.osVersion >= kFirstSignpostOsVersion;
}

// One of the three lists with everything the load and reload treat alike.
struct ListSlot {
  NamedList& list;
  ComboBoxModel& box;
  std::string& shown;
  std::string_view listKey;
  std::string_view indexKey;
  // The predicate box always ends up on a row; the other two keep a stored -1 as "typed".
  bool negativeIndexSelectsRowZero;
};

std::array<ListSlot, 3> listSlots(MainSettings& s) {
  return {{
      {s.specPredList, s.comboPredicate, s.thePredicateStr, kSpecPredListKey, kPopupPredicateKey,
       true},
      {s.specFiltList, s.comboFilter, s.theFilterStr, kSpecFiltListKey, kPopupFilterKey, false},
      {s.specStyleList, s.comboStyle, s.theStyleStr, kSpecStyleListKey, kPopupStyleKey, false},
  }};
}

void fillBox(ComboBoxModel& box, const NamedList& list) {
  box.removeAllItems();
  for (const ListEntry& e : list)
    box.addItem(e.name);
}

int64_t correctedIndex(int64_t stored, const ListSlot& slot) {
  if (stored >= slot.box.rowCount()) return 0;
  if (stored < 0 && slot.negativeIndexSelectsRowZero) return 0;
  return stored;
}

void storeLists(const MainSettings& s, SettingsBatch& batch) {
  batch.set(kSpecPredListKey, namedListToPlist(s.specPredList));
  batch.set(kSpecFiltListKey, namedListToPlist(s.specFiltList));
  batch.set(kSpecStyleListKey, namedListToPlist(s.specStyleList));
}

PlistValue factoryValue(const FactorySetting& f) {
  return f.type == SettingType::boolean ? PlistValue(f.value != 0) : PlistValue(f.value);
}

}  // namespace

int64_t logCapFromStore(const SettingsStore& store) {
  const int64_t limit = store.integerValue(kLogLimitKey);
  return limit > kLargestRejectedLogLimit ? limit : kFactoryLogLimit;
}

double fontSizeFromStore(const SettingsStore& store) {
  const double size = store.doubleValue(kFontSizeKey);
  // Below the smallest (NaN too) means unset; above the largest was not written by the
  // commands, and a huge size would leave the view blank.
  if (!(size >= kSmallestFontSize)) return kDefaultFontSize;
  return std::min(size, kLargestFontSize);
}

Status stepFontSize(MainSettings& settings, SettingsStore& store, int points) {
  settings.theFontSize =
      std::clamp(settings.theFontSize + points, kSmallestFontSize, kLargestFontSize);
  return store.setDouble(kFontSizeKey, settings.theFontSize);
}

PlistDict factorySettingValues(int osVersion) {
  PlistDict values;
  for (const FactorySetting& f : kFactorySettings)
    if (!f.signpostsOnly || osVersion >= kFirstSignpostOsVersion)
      values.emplace_back(std::string(f.key), factoryValue(f));
  for (std::string_view key : {kSpecPredListKey, kSpecFiltListKey, kSpecStyleListKey})
    values.emplace_back(std::string(key), namedListToPlist(factoryList(key, osVersion)));
  // Made in place: a moved temporary here trips a false uninitialised-use warning of GCC 12.
  values.emplace_back(std::piecewise_construct, std::forward_as_tuple(kLogLimitKey),
                      std::forward_as_tuple(kFactoryLogLimit));
  return values;
}

Status storeFactorySettings(SettingsStore& store, int osVersion) {
  SettingsBatch batch(store);
  for (auto& [key, value] : factorySettingValues(osVersion))
    batch.set(key, std::move(value));
  return batch.commit();
}

bool storeNeedsFactorySettings(const SettingsStore& store) {
  const NamedListRead styles = store.namedList(kSpecStyleListKey);
  return styles.status == NamedListRead::Status::absent ||
         (styles.status == NamedListRead::Status::ok && styles.list.empty());
}

Status resetFactorySettings(MainSettings& settings, SettingsStore& store) {
  Status written = storeFactorySettings(store, settings.osVersion);
  settings.specPredList = factoryPredicateList();
  settings.specFiltList = factoryFilterList();
  settings.specStyleList = factoryStyleList(settings.osVersion);
  // Observers read the store, so they are told only once the batch is written. A failed write
  // still changed the values they read.
  store.notifications().post(kCustomsChanged);
  settings.theReplaceOnImport = true;
  settings.theLogCap = kFactoryLogLimit;
  return written;
}

void loadListsIntoBoxes(MainSettings& settings, const SettingsStore& store) {
  for (ListSlot& slot : listSlots(settings)) {
    NamedListRead read = store.namedList(slot.listKey);
    if (read.status == NamedListRead::Status::ok)
      slot.list = std::move(read.list);
    else if (read.status == NamedListRead::Status::corrupt)
      slot.list = factoryList(slot.listKey, settings.osVersion);  // the stored value stays as it is
    fillBox(slot.box, slot.list);
    slot.box.selectItem(correctedIndex(store.integerValue(slot.indexKey), slot));
    slot.shown = slot.box.displayedString();
  }
}

void showListsAtRowZero(MainSettings& settings) {
  for (ListSlot& slot : listSlots(settings)) {
    fillBox(slot.box, slot.list);
    slot.box.selectItem(0);
    slot.shown = slot.box.displayedString();
  }
}

Status reloadListBoxes(MainSettings& settings, SettingsStore& store) {
  showListsAtRowZero(settings);
  SettingsBatch batch(store);
  storeLists(settings, batch);
  return batch.commit();
}

Status doSaveDefaults(const MainSettings& settings, SettingsStore& store) {
  SettingsBatch batch(store);
  batch.set(kTimePeriodKey, settings.theTimePeriod);
  batch.set(kPopupTimeUnitsKey, settings.timeUnitIndex);
  batch.set(kPopupPredicateKey, settings.comboPredicate.selectedIndex());
  batch.set(kPopupFilterKey, settings.comboFilter.selectedIndex());
  batch.set(kPopupStyleKey, settings.comboStyle.selectedIndex());
  batch.set(kLimitEntriesKey, settings.limitEntries);
  batch.set(kShowLogEntriesKey, settings.showLogEntries);
  if (hasSignposts(settings)) batch.set(kShowSignpostsKey, settings.showSignposts);
  batch.set(kFetchInfoKey, settings.fetchInfo);
  if (hasSignposts(settings)) batch.set(kFetchSignpostsKey, settings.fetchSignposts);
  batch.set(kFetchDebugKey, settings.fetchDebug);
  return batch.commit();
}

void loadCusMenu(MainSettings& settings, const SettingsStore& store) {
  loadListsIntoBoxes(settings, store);
  settings.theLogCap = logCapFromStore(store);
}

Status loadMainSettingsAtStart(MainSettings& settings, SettingsStore& store, int osVersion) {
  settings.osVersion = osVersion;
  settings.theFontSize = fontSizeFromStore(store);
  Status written = okStatus();
  if (storeNeedsFactorySettings(store)) written = resetFactorySettings(settings, store);

  // A unit index the menu does not have would leave it without a selection; "sec" is meant.
  const int64_t unit = store.integerValue(kPopupTimeUnitsKey);
  settings.timeUnitIndex =
      unit >= 0 && unit < static_cast<int64_t>(timeUnitsList.size()) ? unit : 0;
  settings.theTimeSelStr = timeUnitsList[static_cast<size_t>(settings.timeUnitIndex)];

  loadListsIntoBoxes(settings, store);

  const int64_t period = store.integerValue(kTimePeriodKey);
  settings.theTimePeriod = period != 0 ? period : kFactoryTimePeriod;
  settings.theLogCap = logCapFromStore(store);

  settings.limitEntries = store.boolValue(kLimitEntriesKey);
  settings.showLogEntries = store.boolValue(kShowLogEntriesKey);
  settings.fetchInfo = store.boolValue(kFetchInfoKey);
  settings.fetchDebug = store.boolValue(kFetchDebugKey);
  settings.showSignposts = hasSignposts(settings) && store.boolValue(kShowSignpostsKey);
  settings.fetchSignposts = hasSignposts(settings) && store.boolValue(kFetchSignpostsKey);
  return written;
}

NotificationCenter::Observation observeCustomsChanged(MainSettings& settings, SettingsStore& store,
                                                      std::function<void()> afterReload) {
  return store.notifications().observe(std::string(kCustomsChanged),
                                       [&settings, &store, after = std::move(afterReload)] {
                                         loadCusMenu(settings, store);
                                         if (after) after();
                                       });
}

}  // namespace kavor
