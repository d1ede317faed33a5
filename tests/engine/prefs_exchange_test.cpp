#include "engine/query/prefs_exchange.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "engine/query/main_settings_store.h"
#include "engine/query/named_lists.h"
#include "engine/query/settings_texts.h"
#include "tests/engine/refusing_settings_store.h"
#include "tests/platform/temp_folder.h"

namespace kavor {
namespace {

using testing_support::TempFolder;
using testing_support::writeFile;

PlistValue entries(std::initializer_list<std::pair<const char*, const char*>> list) {
  PlistArray array;
  for (const auto& [name, text] : list)
    array.push_back(arrayValue({name, text}));
  return PlistValue(std::move(array));
}

std::string fileOf(PlistValue preds, PlistValue styles, PlistValue filts) {
  PlistValue dict{PlistDict{}};
  dict.set(kSpecPredListKey, std::move(preds));
  dict.set(kSpecStyleListKey, std::move(styles));
  dict.set(kSpecFiltListKey, std::move(filts));
  return writeXmlPlist(dict);
}

PrefsLists someLists() {
  return {{{"none", ""}, {"mine", "process == \"a b\""}},
          {{"none", "0h 4 10"}, {"short", "10"}},
          {{"none", ""}, {"café", "CAFÉ"}}};
}

// A main window that loaded the given lists from its store.
MainSettings windowWith(SettingsStore& store, const PrefsLists& lists) {
  EXPECT_TRUE(store.setNamedList(kSpecPredListKey, lists.predicates));
  EXPECT_TRUE(store.setNamedList(kSpecStyleListKey, lists.styles));
  EXPECT_TRUE(store.setNamedList(kSpecFiltListKey, lists.filters));
  EXPECT_TRUE(store.setInteger(kPopupPredicateKey, 1));
  MainSettings settings;
  loadListsIntoBoxes(settings, store);
  return settings;
}

TEST(PrefsExchange, ExportThenReplacingImportGivesTheSameListsAtRowZero) {
  TempFolder tmp;
  const auto file = tmp / "lists.plist";
  MemorySettingsStore store;
  MainSettings window = windowWith(store, someLists());
  ASSERT_TRUE(writeExchangeFile(file, listsOf(window)));
  const std::string xml = testing_support::readFile(file);
  EXPECT_LT(xml.find("specPredList"), xml.find("specStyleList"));
  EXPECT_LT(xml.find("specStyleList"), xml.find("specFiltList"));

  window.specPredList = factoryPredicateList();
  window.specFiltList = initialNamedList();
  ASSERT_TRUE(store.setNamedList(kSpecFiltListKey, initialNamedList()));
  // The window's own reload selects the stored rows; the import then shows row 0.
  auto reload = observeCustomsChanged(window, store);
  int posted = 0;
  auto obs = store.notifications().observe(std::string(kCustomsChanged), [&] {
    ++posted;
    EXPECT_EQ(store.namedList(kSpecFiltListKey).list, someLists().filters);
  });
  const auto imported = importPrefs(window, store, file);
  ASSERT_TRUE(imported) << imported.error().message();
  EXPECT_TRUE(*imported);
  EXPECT_EQ(posted, 1);
  EXPECT_EQ(listsOf(window), someLists());
  EXPECT_EQ(window.comboPredicate.selectedIndex(), 0);
  EXPECT_EQ(window.thePredicateStr, "none");
  EXPECT_EQ(window.comboFilter.items().back(), "café");
}

TEST(PrefsExchange, MergingAppendsOnlyNamesNotYetInTheList) {
  const PrefsLists current = {{{"none", ""}, {"old", "kept"}}, {{"none", "10"}}, {}};
  const std::string file = fileOf(entries({{"none", ""}, {"X", "a"}, {"old", "other"}}),
                                  entries({{"Y", "first"}, {"Y", "second"}, {"none", "0"}}),
                                  entries({{"Z", "1"}, {"Z", "2"}}));
  const auto merged = importedLists(file, current, ImportMode::merge);
  ASSERT_TRUE(merged && *merged);
  const PrefsLists expected = {
      {{"none", ""}, {"old", "kept"}, {"X", "a"}}, {{"none", "10"}, {"Y", "first"}}, {{"Z", "1"}}};
  EXPECT_EQ(**merged, expected);
}

TEST(PrefsExchange, ABinaryPropertyListImports) {
  const auto imported = importedListsFromFile(KAVOR_TEST_DATA "/prefs/lists.bplist", someLists(),
                                              ImportMode::replace);
  ASSERT_TRUE(imported && *imported);
  const PrefsLists expected = {{{"none", ""}, {"X", "a"}},
                               {{"none", "0h 4 10"}, {"msg", "10"}},
                               {{"none", ""}, {"err", "error"}}};
  EXPECT_EQ(**imported, expected);
}

TEST(PrefsExchange, BadFilesChangeNothingAndSayWhy) {
  TempFolder tmp;
  const PlistValue good = entries({{"a", "b"}});
  const std::pair<std::string, std::string> cases[] = {
      {"not a property list", "it is not a property list"},
      {writeXmlPlist(good), "it holds no dictionary of lists"},
      {writeXmlPlist(PlistValue(PlistDict{{"specPredList", good}, {"specFiltList", good}})),
       "it has no \"specStyleList\""},
      {fileOf(good, PlistValue("styles"), good), "\"specStyleList\" is not a list of entries"},
      {fileOf(good, good, arrayValue({arrayValue({"a", "b"}), arrayValue({"a", "b", "c"})})),
       "entry 2 of \"specFiltList\" is not a name and a text"},
      {fileOf(arrayValue({arrayValue({"a", 5})}), good, good),
       "entry 1 of \"specPredList\" is not a name and a text"},
      {fileOf(good, good, entries({{"", "b"}})), "entry 1 of \"specFiltList\" has no name"},
      {testing_support::readFile(KAVOR_TEST_DATA "/prefs/nul.bplist"),
       "entry 2 of \"specPredList\" holds a NUL character, which the settings cannot keep"},
  };
  MemorySettingsStore store;
  MainSettings window = windowWith(store, someLists());
  window.theReplaceOnImport = true;
  const PlistDict stored = store.all();
  int posted = 0;
  auto obs = store.notifications().observe(std::string(kCustomsChanged), [&] { ++posted; });
  for (const auto& [bytes, reason] : cases) {
    const auto file = tmp / "bad.plist";
    writeFile(file, bytes);
    const auto imported = importPrefs(window, store, file);
    ASSERT_FALSE(imported) << reason;
    EXPECT_EQ(imported.error().message(), "Couldn't import \"" + file.string() + "\": " + reason);
  }
  const auto missing = importPrefs(window, store, tmp / "none.plist");
  ASSERT_FALSE(missing);
  EXPECT_NE(missing.error().message().find("No such file or directory"), std::string::npos);

  // An empty dictionary is no error, and changes nothing either.
  writeFile(tmp / "empty.plist", writeXmlPlist(PlistValue(PlistDict{})));
  const auto empty = importPrefs(window, store, tmp / "empty.plist");
  ASSERT_TRUE(empty);
  EXPECT_FALSE(*empty);

  EXPECT_EQ(store.all(), stored);
  EXPECT_EQ(listsOf(window), someLists());
  EXPECT_EQ(window.comboPredicate.selectedIndex(), 1);
  EXPECT_EQ(posted, 0);
}

TEST(PrefsExchange, AStoreFailingPartWayKeepsTheStoredAndShownLists) {
  TempFolder tmp;
  // Predicates and filters are written before the styles, which the store refuses.
  testing_support::RefusingSettingsStore store(kSpecStyleListKey);
  MainSettings window = windowWith(store.kept(), someLists());
  const PlistDict stored = store.kept().all();
  writeFile(tmp / "new.plist",
            fileOf(entries({{"p", "1"}}), entries({{"s", "1"}}), entries({{"f", "1"}})));
  const auto imported = importPrefs(window, store, tmp / "new.plist");
  ASSERT_FALSE(imported);
  EXPECT_NE(imported.error().message().find("Couldn't store the imported lists"),
            std::string::npos);
  EXPECT_EQ(store.kept().all(), stored);
  EXPECT_EQ(listsOf(window), someLists());
}

}  // namespace
}  // namespace kavor
