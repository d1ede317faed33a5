#pragma once
// The main window's settings keys, their factory values, the notification that announces changed
// lists, and the factory contents of the three named lists. Every one of these texts is stored
// or shown as it is, so each is written here once.

#include <array>
#include <cstdint>
#include <string_view>

namespace kavor {

// Posted after the named lists or the entry limit changed; every main window reloads its boxes.
inline constexpr std::string_view kCustomsChanged = "Customs-Changed";

inline constexpr std::string_view kTimePeriodKey = "timePeriod";
inline constexpr std::string_view kPopupTimeUnitsKey = "popupTimeUnits";
inline constexpr std::string_view kPopupPredicateKey = "popupPredicate";
inline constexpr std::string_view kPopupFilterKey = "popupFilter";
inline constexpr std::string_view kPopupStyleKey = "popupStyle";
inline constexpr std::string_view kLimitEntriesKey = "limitEntries";
inline constexpr std::string_view kShowLogEntriesKey = "showLogEntries";
inline constexpr std::string_view kShowSignpostsKey = "showSignposts";
inline constexpr std::string_view kFetchInfoKey = "fetchInfo";
inline constexpr std::string_view kFetchSignpostsKey = "fetchSignposts";
inline constexpr std::string_view kFetchDebugKey = "fetchDebug";
inline constexpr std::string_view kDontShowGraphViewKey = "dontShowGraphView";
inline constexpr std::string_view kReplaceOnImportKey = "replaceOnImportbutton";
inline constexpr std::string_view kSpecPredListKey = "specPredList";
inline constexpr std::string_view kSpecFiltListKey = "specFiltList";
inline constexpr std::string_view kSpecStyleListKey = "specStyleList";
inline constexpr std::string_view kLogLimitKey = "logLimit";
inline constexpr std::string_view kFontSizeKey = "fontSize";

// Signposts, their switches and the longer "starters" style exist from 10.13 on.
inline constexpr int kFirstSignpostOsVersion = 13;

enum class SettingType { integer, boolean };

struct FactorySetting {
  std::string_view key;
  SettingType type;
  int64_t value;       // for a boolean, 0 or 1
  bool signpostsOnly;  // written only when the system has signposts
};

// The single-value settings a factory reset writes, in the order it writes them.
inline constexpr std::array<FactorySetting, 13> kFactorySettings = {{
    {kTimePeriodKey, SettingType::integer, -20, false},
    {kPopupTimeUnitsKey, SettingType::integer, 0, false},
    {kPopupPredicateKey, SettingType::integer, 0, false},
    {kPopupFilterKey, SettingType::integer, 0, false},
    {kPopupStyleKey, SettingType::integer, 0, false},
    {kLimitEntriesKey, SettingType::boolean, 1, false},
    {kShowLogEntriesKey, SettingType::boolean, 1, false},
    {kShowSignpostsKey, SettingType::boolean, 0, true},
    {kFetchInfoKey, SettingType::boolean, 1, false},
    {kFetchSignpostsKey, SettingType::boolean, 1, true},
    {kDontShowGraphViewKey, SettingType::boolean, 0, false},
    {kFetchDebugKey, SettingType::boolean, 0, false},
    {kReplaceOnImportKey, SettingType::boolean, 1, false},
}};

inline constexpr int64_t kFactoryTimePeriod = -20;
inline constexpr int64_t kFactoryLogLimit = 999;
// A stored limit must exceed this to be used; anything else means the factory limit.
inline constexpr int64_t kLargestRejectedLogLimit = 99;
inline constexpr double kDefaultFontSize = 12.0;
inline constexpr double kSmallestFontSize = 4.0;
inline constexpr double kLargestFontSize = 24.0;

// Items of the time unit menu; the stored "popupTimeUnits" indexes it and the query relies on
// this order.
inline constexpr std::array<std::string_view, 4> timeUnitsList = {"sec", "min", "hour", "day"};

struct ListEntryText {
  std::string_view name;
  std::string_view text;
};

// The entry every list starts with before the store is read, and the name boxes show first.
inline constexpr std::string_view kNoneName = "none";

inline constexpr std::array<ListEntryText, 7> kFactoryPredicates = {{
    {kNoneName, ""},
    {"TimeMachineBasic", R"(subsystem == "com.apple.TimeMachine")"},
    {"TimeMachineFull",
     R"(subsystem == "com.apple.TimeMachine" || eventMessage CONTAINS[c] "backup" || )"
     R"(eventMessage CONTAINS[c] "Time Machine" || eventMessage CONTAINS[c] "TimeMachine")"},
    {"error", R"(eventMessage CONTAINS[c] "error")"},
    {"===", R"(eventMessage CONTAINS[c] "===")"},
    {"kernel", "processID = 0"},
    {"Nimbet", R"(subsystem == "co.tarnwick.nimbet")"},
}};

// Row 0 is "none" with no text; every other filter's text is its name.
inline constexpr std::array<std::string_view, 10> kFactoryFilterNames = {
    kNoneName, "error", "apple", "kernel", "sandbox", "start", "fail", "===", "boot:", "shutdown"};

inline constexpr std::string_view kStartersStyleName = "starters";
inline constexpr std::string_view kStartersStyle = "0hr 1 2 3 4b 5 6 7 8 9 10g 11 12 13 14 15 16";
inline constexpr std::string_view kStartersStyleBefore13 =
    "0hr 1 2 3 4b 5 6 7 8 9 10g 11 12 13 14 15";

// The "starters" row takes its text by system version.
inline constexpr std::array<ListEntryText, 6> kFactoryStyles = {{
    {kNoneName, "0h 4 10"},
    {"basic", "0h 5r 10"},
    {"basic+", "0h 4r 6g 9b 10"},
    {"regular", "0hr 2g 6b 9b 4r 10"},
    {kStartersStyleName, kStartersStyle},
    {"starters+", "0 2g 6 9 4b 3 11fr 13fg 10"},
}};

}  // namespace kavor
