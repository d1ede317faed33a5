#pragma once
// Titles of the menus and menu items that controllers look up by title, and the identifiers the
// interface definition makes window controllers from. Each is written here once.

#include <array>
#include <string_view>

namespace kavor {

inline constexpr std::string_view kApplicationName = "Kavor";

// Top-level menus.
inline constexpr std::string_view kApplicationMenuTitle = kApplicationName;
inline constexpr std::string_view kFileMenuTitle = "File";
inline constexpr std::string_view kEditMenuTitle = "Edit";
inline constexpr std::string_view kViewMenuTitle = "View";
inline constexpr std::string_view kWindowsMenuTitle = "Windows";
inline constexpr std::string_view kHelpMenuTitle = "Help";

inline constexpr std::string_view kOpenJsonLogItem = "Open JSON Log\u2026";
inline constexpr std::string_view kFindItem = "Find\u2026";
inline constexpr std::string_view kFindNextItem = "Find Next";
inline constexpr std::string_view kFindPreviousItem = "Find Previous";
inline constexpr std::string_view kEnableChartViewItem = "Enable Chart View";
inline constexpr std::string_view kOpenChartItem = "Open Chart";
inline constexpr std::string_view kLogarchiveToolItem = "Logarchive Tool";
inline constexpr std::string_view kLogCheckItem = "Log Check";
inline constexpr std::string_view kLogFieldsItem = "Log Fields";
inline constexpr std::string_view kUpdateNotCheckedItem = "Update not checked";
inline constexpr std::string_view kHelpItem = "Kavor Help";
inline constexpr std::string_view kSupportPageItem = "Kavor Support Page";
inline constexpr std::string_view kReleasesPageItem = "Kavor Releases Page";

// The project's own pages that the Help menu opens in the default browser.
inline constexpr std::string_view kSupportPageAddress = "https://kavor.app/support/";
inline constexpr std::string_view kReleasesPageAddress = "https://kavor.app/releases/";

// The manual, among the application's resources.
inline constexpr std::string_view kHelpResourceName = "KavorHelp";
inline constexpr std::string_view kHelpResourceExtension = "pdf";

// The View menu items that mirror a main window's switches, in menu order.
inline constexpr std::string_view kLimitEntriesItem = "Limit entries shown";
inline constexpr std::string_view kShowLogEntriesItem = "Show log entries";
inline constexpr std::string_view kShowSignpostsItem = "Show Signposts";
inline constexpr std::string_view kShowActivitiesItem = "Show Activities";
inline constexpr std::string_view kFetchInfoItem = "Get info messages";
inline constexpr std::string_view kFetchSignpostsItem = "Get Signposts";
inline constexpr std::string_view kFetchDebugItem = "Get Debug";
// Not one of the switches: each window shows its results as text or as a table.
inline constexpr std::string_view kShowAsTableItem = "Show as Table";

// Identifiers of window controllers in the interface definition.
inline constexpr std::string_view kDocumentWindowControllerId = "Document Window Controller";
inline constexpr std::string_view kGraphWindowControllerId = "GraphWindowController";
inline constexpr std::string_view kFieldWindowControllerId = "Field Window Controller";
inline constexpr std::string_view kPrefsWindowControllerId = "Prefs Window Controller";
inline constexpr std::string_view kHelpWindowControllerId = "Help Window Controller";

}  // namespace kavor
