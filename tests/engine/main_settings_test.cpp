#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/query/main_settings_store.h"
#include "platform/file_settings_store.h"
#include "tests/platform/temp_folder.h"

namespace kavor {
namespace {

std::vector<std::string> keysInWriteOrder(const MemorySettingsStore& store) {
  std::vector<std::string> keys;
  for (const auto& [k, v] : store.all())
    keys.push_back(k);
  return keys;
}

NamedList twoEntries(const std::string& first, const std::string& second) {
  return {{first, first + "-text"}, {second, second + "-text"}};
}

// A store as a previous session left it: three two-entry lists and the given selections.
void seedStore(MemorySettingsStore& store, int64_t pred, int64_t filt, int64_t style) {
  EXPECT_TRUE(store.setNamedList(kSpecPredListKey, twoEntries("p0", "p1")));
  EXPECT_TRUE(store.setNamedList(kSpecFiltListKey, twoEntries("f0", "f1")));
  EXPECT_TRUE(store.setNamedList(kSpecStyleListKey, twoEntries("s0", "s1")));
  EXPECT_TRUE(store.setInteger(kPopupPredicateKey, pred));
  EXPECT_TRUE(store.setInteger(kPopupFilterKey, filt));
  EXPECT_TRUE(store.setInteger(kPopupStyleKey, style));
}

TEST(ResetFactorySettings, WritesInOrderThenPostsThenSetsTheWindow) {
  MemorySettingsStore store;
  MainSettings s;
  s.osVersion = 15;
  s.theLogCap = 5000;
  s.theReplaceOnImport = false;
  int writesWhenPosted = -1;
  int64_t capWhenPosted = 0;
  auto obs = store.notifications().observe(std::string(kCustomsChanged), [&] {
    writesWhenPosted = store.writeCount();
    capWhenPosted = s.theLogCap;
  });
  ASSERT_TRUE(resetFactorySettings(s, store));

  EXPECT_EQ(keysInWriteOrder(store),
            (std::vector<std::string>{
                "timePeriod", "popupTimeUnits", "popupPredicate", "popupFilter", "popupStyle",
                "limitEntries", "showLogEntries", "showSignposts", "fetchInfo", "fetchSignposts",
                "dontShowGraphView", "fetchDebug", "replaceOnImportbutton", "specPredList",
                "specFiltList", "specStyleList", "logLimit"}));
  EXPECT_EQ(store.namedList(kSpecStyleListKey).list, factoryStyleList(15));
  EXPECT_EQ(s.specFiltList, factoryFilterList());

  EXPECT_EQ(writesWhenPosted, store.writeCount());
  EXPECT_EQ(capWhenPosted, 5000);  // the window's own values are set after the notification
  EXPECT_EQ(s.theLogCap, 999);
  EXPECT_TRUE(s.theReplaceOnImport);
  EXPECT_EQ(s.comboPredicate.rowCount(), 0);  // boxes reload only through the notification
}

TEST(LoadMainSettingsAtStart, StoredValuesAndTheirCorrections) {
  MemorySettingsStore store;
  seedStore(store, 0, 0, 0);
  EXPECT_TRUE(store.setInteger(kTimePeriodKey, 0));
  EXPECT_TRUE(store.setInteger(kPopupTimeUnitsKey, 7));
  EXPECT_TRUE(store.setBool(kShowSignpostsKey, true));
  EXPECT_TRUE(store.setBool(kFetchSignpostsKey, true));
  MainSettings s;
  ASSERT_TRUE(loadMainSettingsAtStart(s, store, 12));
  EXPECT_EQ(s.theTimePeriod, -20);
  EXPECT_EQ(s.theTimeSelStr, "sec");
  EXPECT_FALSE(s.showSignposts || s.fetchSignposts);
  EXPECT_EQ(s.thePredicateStr, "p0");  // the stored lists were kept: no reset ran

  EXPECT_TRUE(store.setInteger(kTimePeriodKey, 3));
  EXPECT_TRUE(store.setInteger(kPopupTimeUnitsKey, 2));
  ASSERT_TRUE(loadMainSettingsAtStart(s, store, 13));
  EXPECT_EQ(s.theTimePeriod, 3);
  EXPECT_EQ(s.theTimeSelStr, "hour");
  EXPECT_TRUE(s.showSignposts && s.fetchSignposts);

  // Beyond the largest size the commands reach, the text would not be readable (1e308 blanks it).
  for (const auto& [stored, expected] :
       {std::pair{3.5, 12.0}, {4.0, 4.0}, {18.0, 18.0}, {24.5, 24.0}, {1e308, 24.0}}) {
    EXPECT_TRUE(store.setDouble(kFontSizeKey, stored));
    ASSERT_TRUE(loadMainSettingsAtStart(s, store, 15));
    EXPECT_EQ(s.theFontSize, expected) << stored;
  }
  EXPECT_TRUE(store.removeValue(kFontSizeKey));
  EXPECT_EQ(fontSizeFromStore(store), 12.0);
}

TEST(LoadMainSettingsAtStart, EmptyStyleListResetsCorruptOneFallsBack) {
  MemorySettingsStore empty;
  seedStore(empty, 0, 0, 0);
  EXPECT_TRUE(empty.setValue(kSpecStyleListKey, arrayValue({})));
  MainSettings s;
  ASSERT_TRUE(loadMainSettingsAtStart(s, empty, 15));
  EXPECT_EQ(empty.namedList(kSpecPredListKey).list, factoryPredicateList());

  // A corrupt element, or a value that is no list at all: either is the user's data.
  for (const PlistValue& bad : {arrayValue({arrayValue({"only a name"})}), PlistValue("a list?")}) {
    MemorySettingsStore corrupt;
    seedStore(corrupt, 0, 0, 0);
    EXPECT_TRUE(corrupt.setValue(kSpecStyleListKey, bad));
    EXPECT_TRUE(corrupt.setValue(kSpecFiltListKey, arrayValue({arrayValue({"a", 5})})));
    EXPECT_TRUE(corrupt.setValue(kSpecPredListKey, 7));
    MainSettings t;
    ASSERT_TRUE(loadMainSettingsAtStart(t, corrupt, 12));
    EXPECT_EQ(t.specStyleList, factoryStyleList(12));
    EXPECT_EQ(t.specFiltList, factoryFilterList());
    EXPECT_EQ(t.specPredList, factoryPredicateList());
    EXPECT_EQ(t.comboFilter.rowCount(), 10);
    // Never overwritten behind the user's back.
    EXPECT_EQ(corrupt.value(kSpecStyleListKey), bad);
    EXPECT_EQ(corrupt.value(kSpecPredListKey), PlistValue(7));
    EXPECT_EQ(corrupt.integerValue(kLogLimitKey), 0);
  }
}

TEST(LoadListsIntoBoxes, CorrectsStoredSelections) {
  struct Case {
    int64_t stored;
    std::string pred, filt, style;
  };
  // -1: the predicate box goes to row 0, the other two keep their text with no row selected.
  for (const Case& c :
       {Case{-1, "p0", "typed", ""}, Case{2, "p0", "f0", "s0"}, Case{1, "p1", "f1", "s1"}}) {
    MemorySettingsStore store;
    seedStore(store, c.stored, c.stored, c.stored);
    MainSettings s;
    s.comboFilter.typeText("typed");
    loadListsIntoBoxes(s, store);
    EXPECT_EQ(s.thePredicateStr, c.pred) << c.stored;
    EXPECT_EQ(s.theFilterStr, c.filt) << c.stored;
    EXPECT_EQ(s.theStyleStr, c.style) << c.stored;
    EXPECT_EQ(s.comboStyle.selectedIndex(), c.stored < 0 ? -1 : c.stored % 2);
  }
}

TEST(LoadCusMenu, RunsOnCustomsChangedAndAppliesTheCapRule) {
  MemorySettingsStore store;
  seedStore(store, 1, 1, 1);
  MainSettings s;
  int reloads = 0;
  auto obs = observeCustomsChanged(s, store, [&] { ++reloads; });
  for (const auto& [stored, expected] : {std::pair{100, 100}, {99, 999}}) {
    EXPECT_TRUE(store.setInteger(kLogLimitKey, stored));
    store.notifications().post(kCustomsChanged);
    EXPECT_EQ(s.theLogCap, expected) << stored;
  }
  EXPECT_TRUE(store.removeValue(kLogLimitKey));
  EXPECT_TRUE(store.setNamedList(kSpecPredListKey, twoEntries("q0", "q1")));
  store.notifications().post(kCustomsChanged);
  EXPECT_EQ(s.theLogCap, 999);
  EXPECT_EQ(s.thePredicateStr, "q1");
  EXPECT_EQ(reloads, 3);

  obs.reset();
  EXPECT_TRUE(store.setInteger(kLogLimitKey, 300));
  store.notifications().post(kCustomsChanged);
  EXPECT_EQ(s.theLogCap, 999);
}

TEST(ReloadListBoxesThenDoSaveDefaults, RowZeroThenTheSelectionsAndSignpostsFrom13) {
  MemorySettingsStore old;
  seedStore(old, 1, 1, 1);
  MainSettings s;
  loadListsIntoBoxes(s, old);
  s.specPredList = twoEntries("x0", "x1");
  s.comboFilter.typeText("typed");
  ASSERT_TRUE(reloadListBoxes(s, old));
  EXPECT_EQ(s.comboPredicate.items(), (std::vector<std::string>{"x0", "x1"}));
  EXPECT_EQ(s.thePredicateStr, "x0");
  EXPECT_EQ(s.comboFilter.selectedIndex(), 0);
  EXPECT_EQ(s.theFilterStr, "f0");
  EXPECT_EQ(old.namedList(kSpecPredListKey).list, s.specPredList);
  EXPECT_EQ(old.integerValue(kPopupPredicateKey), 1);  // selections are saved only on request

  // Saved on request, the signposts only from 13.
  s.comboFilter.selectItem(1);
  s.comboPredicate.typeText("process == \"x\"");
  s.theTimePeriod = 7;
  s.timeUnitIndex = 3;
  s.showSignposts = true;

  s.osVersion = 12;
  MemorySettingsStore store;
  ASSERT_TRUE(doSaveDefaults(s, store));
  EXPECT_EQ(keysInWriteOrder(store),
            (std::vector<std::string>{"timePeriod", "popupTimeUnits", "popupPredicate",
                                      "popupFilter", "popupStyle", "limitEntries", "showLogEntries",
                                      "fetchInfo", "fetchDebug"}));
  EXPECT_EQ(store.integerValue(kPopupPredicateKey), -1);
  EXPECT_EQ(store.integerValue(kPopupFilterKey), 1);
  EXPECT_EQ(store.integerValue(kTimePeriodKey), 7);
  EXPECT_EQ(store.integerValue(kPopupTimeUnitsKey), 3);

  s.osVersion = 13;
  ASSERT_TRUE(doSaveDefaults(s, store));
  EXPECT_TRUE(store.boolValue(kShowSignpostsKey) && store.boolValue(kFetchSignpostsKey));
}

TEST(MainSettingsWrites, FailuresReachTheCallerAndTheValuesStillChange) {
  testing_support::TempFolder tmp;
  testing_support::writeFile(tmp / "blocker", "a file where the folder should be");
  FileSettingsStore store(tmp / "blocker/Kavor.plist");
  int posted = 0;
  auto obs = store.notifications().observe(std::string(kCustomsChanged), [&] { ++posted; });
  MainSettings s;
  // An empty store: the first start's reset, which writes the factory settings.
  const Status started = loadMainSettingsAtStart(s, store, 15);
  ASSERT_FALSE(started);
  EXPECT_EQ(started.error().kind, ErrorKind::io);
  EXPECT_EQ(posted, 1);
  EXPECT_EQ(store.namedList(kSpecStyleListKey).list, factoryStyleList(15));
  EXPECT_EQ(s.comboFilter.rowCount(), 10);

  EXPECT_FALSE(doSaveDefaults(s, store));
  EXPECT_FALSE(reloadListBoxes(s, store));
  EXPECT_FALSE(stepFontSize(s, store, 1));
  EXPECT_EQ(store.doubleValue(kFontSizeKey), 13.0);
}

TEST(SelectedListText, TypedRowAndBeyond) {
  ComboBoxModel box;
  for (const char* name : {"a", "b", "extra row"})
    box.addItem(name);
  box.typeText("typed text");
  EXPECT_EQ(selectedListText(box, twoEntries("a", "b")), "typed text");
  box.selectItem(1);
  EXPECT_EQ(selectedListText(box, twoEntries("a", "b")), "b-text");
  box.selectItem(2);
  EXPECT_EQ(selectedListText(box, twoEntries("a", "b")), "");
  box.selectItem(7);  // past the rows: deselects and keeps the text
  EXPECT_EQ(selectedListText(box, twoEntries("a", "b")), "extra row");
}

}  // namespace
}  // namespace kavor
