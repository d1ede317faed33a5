#pragma once
// Export and import of the three named lists, from a main window (its lists, its boxes and the
// store) and from outside any window (kavor-cli, over the stored lists). An import computes the
// new lists whole, then stores them all or nothing. Main thread only.

#include <filesystem>

#include "engine/query/exchange_file.h"
#include "engine/query/main_settings.h"
#include "platform/expected.h"
#include "platform/settings_store.h"

namespace kavor {

// The window's lists in the file's order; exported with writeExchangeFile.
PrefsLists listsOf(const MainSettings& settings);

// Imports the file into the window's lists, replacing or merging by theReplaceOnImport, and
// stores them. Then "Customs-Changed" makes every open main window reload its boxes, after which
// this window's boxes show row 0 of each list. False when the file held an empty dictionary:
// nothing changed. On error nothing changed either (lists, boxes, store); the error's message is
// the alert's text.
Expected<bool> importPrefs(MainSettings& settings, SettingsStore& store,
                           const std::filesystem::path& file);

// The lists a main window would load from the store: the factory lists when it would reset the
// store first, and for a corrupt list; the one-entry list for an absent one.
PrefsLists listsInStore(const SettingsStore& store, int osVersion);
// Whether listsInStore depends on the system's version (only the factory style list does).
bool listsInStoreNeedOsVersion(const SettingsStore& store);

// An import outside any window, into listsInStore. A store a main window would reset also gets
// the factory settings with the lists, so that the first start finds them as it would have
// written them. Results as importPrefs.
Expected<bool> importPrefsIntoStore(SettingsStore& store, const std::filesystem::path& file,
                                    ImportMode mode, int osVersion);

}  // namespace kavor
