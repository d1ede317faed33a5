#include "engine/query/prefs_editor.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/query/main_settings_store.h"
#include "engine/query/named_lists.h"
#include "engine/query/prefs_texts.h"
#include "engine/query/settings_texts.h"
#include "tests/engine/refusing_settings_store.h"

namespace kavor {
namespace {

using P = PrefsList;

NamedList listOf(std::initializer_list<std::pair<const char*, const char*>> entries) {
  NamedList list;
  for (const auto& [name, text] : entries)
    list.push_back(ListEntry{name, text});
  return list;
}

void seed(SettingsStore& store, const NamedList& preds) {
  ASSERT_TRUE(storeFactorySettings(store, 15));
  ASSERT_TRUE(store.setNamedList(kSpecPredListKey, preds));
}

TEST(PrefsEditor, NewThenAddMakesAnUntitledEntryAndSelectsIt) {
  MemorySettingsStore store;
  ASSERT_TRUE(storeFactorySettings(store, 15));
  PrefsEditor editor(store, 15);
  for (const auto& [which, placeholder] : {std::pair{P::predicates, kNewPredicateText},
                                           {P::styles, kNewStyleText},
                                           {P::filters, kNewFilterText}}) {
    const auto n = static_cast<int64_t>(editor.list(which).size());
    const PrefsGroup before = editor.group(which);
    EXPECT_EQ(before.popupItems.size(), editor.list(which).size() + 1);
    EXPECT_EQ(before.popupItems.back(), "New\u2026");
    EXPECT_EQ(before.fields, PrefsFields{});  // not filled on load

    editor.choose(which, n, before.fields);
    editor.add(which, editor.group(which).fields);
    const PrefsGroup after = editor.group(which);
    EXPECT_EQ(editor.list(which).back(), (ListEntry{"untitled", std::string(placeholder)}));
    EXPECT_EQ(after.selectedItem, n);
    EXPECT_EQ(after.popupItems[static_cast<size_t>(n)], "untitled");
    EXPECT_EQ(after.fields, (PrefsFields{"untitled", std::string(placeholder)}));
  }
}

TEST(PrefsEditor, ChangeAndRemoveActOnTheSelectedPositionNeverOnTheFirst) {
  MemorySettingsStore store;
  seed(store, listOf({{"none", ""}, {"dup", "one"}, {"dup", "two"}}));
  PrefsEditor editor(store, 15);

  // Two entries of one name: only the chosen position changes.
  editor.choose(P::predicates, 2, {});
  EXPECT_EQ(editor.group(P::predicates).fields, (PrefsFields{"dup", "two"}));
  editor.change(P::predicates, {"dup", "changed"});
  EXPECT_EQ(editor.list(P::predicates), listOf({{"none", ""}, {"dup", "one"}, {"dup", "changed"}}));

  // Removing the last entry selects the one before it, then the first, which stays.
  editor.remove(P::predicates, {"dup", "changed"});
  EXPECT_EQ(editor.selection(P::predicates), 1);
  EXPECT_EQ(editor.group(P::predicates).fields, (PrefsFields{"dup", "one"}));
  editor.remove(P::predicates, editor.group(P::predicates).fields);
  EXPECT_EQ(editor.selection(P::predicates), 0);
  EXPECT_EQ(editor.group(P::predicates).fields, (PrefsFields{"none", ""}));
  editor.remove(P::predicates, {"none", "typed"});
  editor.change(P::predicates, {"none", "typed"});
  EXPECT_EQ(editor.list(P::predicates), listOf({{"none", ""}}));

  // Choosing the first entry leaves the fields as they are; "New…" is no entry to act on; an
  // empty field stops every button.
  editor.choose(P::predicates, 0, {"kept", "as typed"});
  EXPECT_EQ(editor.group(P::predicates).fields, (PrefsFields{"kept", "as typed"}));
  editor.choose(P::predicates, 1, {});
  editor.remove(P::predicates, {"untitled", "x"});
  editor.add(P::predicates, {"", "x"});
  editor.add(P::predicates, {"x", ""});
  EXPECT_EQ(editor.list(P::predicates), listOf({{"none", ""}}));
}

TEST(PrefsEditor, OpensOnTheStoredSelectionOrOnPositionZero) {
  MemorySettingsStore store;
  seed(store, listOf({{"none", ""}, {"a", "1"}, {"b", "2"}}));
  ASSERT_TRUE(store.setInteger(kPopupPredicateKey, 3));  // the number of entries: past the end
  ASSERT_TRUE(store.setInteger(kPopupStyleKey, 5));
  ASSERT_TRUE(store.setInteger(kPopupFilterKey, -1));  // a typed filter box
  PrefsEditor editor(store, 15);
  EXPECT_EQ(editor.selection(P::predicates), 0);
  EXPECT_EQ(editor.selectedName(P::predicates), "none");
  EXPECT_EQ(editor.selection(P::styles), 5);
  EXPECT_EQ(editor.selectedName(P::styles), "starters+");
  EXPECT_EQ(editor.selection(P::filters), 0);
}

TEST(PrefsEditor, ResetKeepsTheSignpostSwitchesBefore13AndClampsSelections) {
  for (const int osVersion : {12, 13}) {
    MemorySettingsStore store;
    NamedList many = factoryPredicateList();
    for (const char* extra : {"x", "y", "z"})
      many.push_back(ListEntry{extra, extra});
    seed(store, many);
    ASSERT_TRUE(store.setBool(kShowSignpostsKey, true));
    ASSERT_TRUE(store.setBool(kFetchSignpostsKey, false));
    ASSERT_TRUE(store.setInteger(kLogLimitKey, 5000));
    ASSERT_TRUE(store.setBool(kReplaceOnImportKey, false));
    PrefsEditor editor(store, osVersion);
    editor.choose(P::predicates, 9, {});
    int posted = 0;
    auto obs = store.notifications().observe(std::string(kCustomsChanged), [&] {
      ++posted;
      EXPECT_EQ(store.integerValue(kLogLimitKey), 999);  // told once it is written
    });

    ASSERT_TRUE(editor.resetAllPrefs());
    EXPECT_EQ(posted, 1);
    EXPECT_EQ(store.boolValue(kShowSignpostsKey), osVersion == 12) << osVersion;
    EXPECT_EQ(store.boolValue(kFetchSignpostsKey), osVersion == 13) << osVersion;
    EXPECT_EQ(store.namedList(kSpecStyleListKey).list, factoryStyleList(osVersion));
    EXPECT_EQ(editor.list(P::styles), factoryStyleList(osVersion));
    EXPECT_EQ(editor.selection(P::predicates), 6);
    EXPECT_EQ(editor.group(P::predicates).fields.name, "Nimbet");
    EXPECT_EQ(editor.logLimitText(), "999");
  }
}

TEST(PrefsEditor, ClosingStoresEverythingThenTellsTheMainWindowsAndKeepsALimitThatIsNoNumber) {
  MemorySettingsStore store;
  seed(store, listOf({{"none", ""}}));
  PrefsEditor editor(store, 15);
  editor.choose(P::filters, 10, {});
  editor.add(P::filters, {"mine", "kernel"});
  NamedList seen;
  auto obs = store.notifications().observe(std::string(kCustomsChanged),
                                           [&] { seen = store.namedList(kSpecFiltListKey).list; });
  ASSERT_TRUE(editor.storeOnClose(false, "\t1200.9 "));
  EXPECT_EQ(seen.back(), (ListEntry{"mine", "kernel"}));
  EXPECT_EQ(store.integerValue(kLogLimitKey), 1200);
  EXPECT_FALSE(store.boolValue(kReplaceOnImportKey));

  for (const char* letters : {"", "12a", "1e3", ".", "-", "1.2.3", "1 000"}) {
    ASSERT_TRUE(editor.storeOnClose(true, letters));
    EXPECT_EQ(store.integerValue(kLogLimitKey), 1200) << letters;
  }
  EXPECT_TRUE(store.boolValue(kReplaceOnImportKey));
}

TEST(PrefsEditor, AWriteFailingPartWayLeavesTheStoredListsAsTheyWere) {
  // The lists are written before the switch, which the store refuses.
  testing_support::RefusingSettingsStore store(kReplaceOnImportKey);
  seed(store.kept(), listOf({{"none", ""}, {"a", "1"}}));
  const PlistDict before = store.kept().all();
  PrefsEditor editor(store, 15);
  editor.choose(P::predicates, 1, {});
  editor.remove(P::predicates, editor.group(P::predicates).fields);
  editor.choose(P::styles, 6, {});
  editor.add(P::styles, {"new", "10"});

  const Status closed = editor.storeOnClose(false, "2000");
  ASSERT_FALSE(closed);
  EXPECT_EQ(closed.error().sysErrno, ENOSPC);
  EXPECT_EQ(store.kept().all(), before);
}

TEST(PrefsEditor, ACorruptStoredListIsShownAsTheFactoryOneAndKeptUntilEdited) {
  MemorySettingsStore store;
  seed(store, listOf({{"none", ""}}));
  const PlistValue corrupt = arrayValue({arrayValue({"only a name"})});
  ASSERT_TRUE(store.setValue(kSpecStyleListKey, corrupt));
  ASSERT_TRUE(store.setValue(kSpecFiltListKey, corrupt));
  PrefsEditor editor(store, 12);
  EXPECT_EQ(editor.list(P::styles), factoryStyleList(12));
  editor.choose(P::filters, 1, {});
  editor.change(P::filters, {"error", "errors"});
  ASSERT_TRUE(editor.storeOnClose(true, "999"));
  EXPECT_EQ(store.value(kSpecStyleListKey), corrupt);
  EXPECT_EQ(store.namedList(kSpecFiltListKey).list[1], (ListEntry{"error", "errors"}));
}

}  // namespace
}  // namespace kavor
