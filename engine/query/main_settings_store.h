#pragma once
// How the main window's settings meet the settings store: the factory reset, loading the named
// lists into the combo boxes, saving the window's values, and what the window reads when it
// loads. All of it runs on the main thread.

#include <functional>

#include "engine/query/main_settings.h"
#include "platform/notification_center.h"
#include "platform/settings_store.h"

namespace kavor {

// The factory values in the order a reset writes them: the single settings (the signpost
// switches only from 13 on), the three lists (the styles by osVersion), then "logLimit".
PlistDict factorySettingValues(int osVersion);

// Writes factorySettingValues through one batch; notifies nobody.
[[nodiscard]] Status storeFactorySettings(SettingsStore& store, int osVersion);

// Whether a main window would reset the store when it loads: no style list is stored, or an
// empty one. A corrupt list is the user's data, never a missing one.
bool storeNeedsFactorySettings(const SettingsStore& store);

// Writes the factory values (signpost switches only from 13 on) and the factory lists, sets the
// limit to 999, posts "Customs-Changed", then resets theReplaceOnImport and theLogCap. The boxes
// are left alone: the notification makes every open window reload them. The result is the
// outcome of the write, for the user to be told.
[[nodiscard]] Status resetFactorySettings(MainSettings& settings, SettingsStore& store);

// For predicates, filters, styles: takes the stored list if there is one (a corrupt one gives
// the factory list and leaves the stored one as it is), fills the box with its names, selects the
// stored index as corrected for that box, and copies the shown text.
void loadListsIntoBoxes(MainSettings& settings, const SettingsStore& store);

// Refills the boxes from the lists in memory, selects row 0 of each and copies its name.
void showListsAtRowZero(MainSettings& settings);

// showListsAtRowZero, then stores the lists.
[[nodiscard]] Status reloadListBoxes(MainSettings& settings, SettingsStore& store);

// Stores the period, unit, box selections (-1 for a typed box) and switches; the signpost
// switches only from 13 on.
[[nodiscard]] Status doSaveDefaults(const MainSettings& settings, SettingsStore& store);

// The answer to "Customs-Changed": reload the boxes and the entry limit.
void loadCusMenu(MainSettings& settings, const SettingsStore& store);

// What a main window reads when it loads: the system's osVersion, font size, a factory reset
// when no style list is stored (or an empty one, not a corrupt one), the unit, lists and boxes,
// period, limit and switches. The result is the outcome of the reset's write, if one ran.
[[nodiscard]] Status loadMainSettingsAtStart(MainSettings& settings, SettingsStore& store,
                                             int osVersion);

// Runs loadCusMenu on every "Customs-Changed", then afterReload (the window shows the boxes).
// The settings must outlive the observation.
[[nodiscard]] NotificationCenter::Observation observeCustomsChanged(
    MainSettings& settings, SettingsStore& store, std::function<void()> afterReload = {});

// theLogCap from the stored "logLimit": the value when above 99, else 999.
int64_t logCapFromStore(const SettingsStore& store);

// theFontSize from the stored "fontSize": 12 when below 4 (or absent), at most 24.
double fontSizeFromStore(const SettingsStore& store);

// The font size commands: theFontSize one point larger (points 1) or smaller (-1), within 4 and
// 24, stored under "fontSize".
[[nodiscard]] Status stepFontSize(MainSettings& settings, SettingsStore& store, int points);

}  // namespace kavor
