#pragma once
// The texts, paths and arguments of the start-up checks and of the Log Check window, written
// here once. Paths are the system's fixed ones: shown as they stand, resolved under the system
// root only when they are read.

#include <array>
#include <cstddef>
#include <string_view>

namespace kavor {

// The alert every start-up check shows: this message, the check's text as informative text.
inline constexpr std::string_view kShellErrorMessage = "An error occurred:";
inline constexpr std::string_view kShellAlertButton = "OK";

inline constexpr std::string_view kNotAdminAlert =
    "Kavor can't get logs unless you're an admin user.\n"
    "Please switch to an admin account and try again.";
inline constexpr std::string_view kNoLogFilesAlert =
    "Kavor can't find any log files on your Mac.\nYou can still browse logarchives, though.";
inline constexpr std::string_view kNoTimesyncAlert =
    "Kavor can't find log timesync files on your Mac.\nYou can still browse logarchives, though.";
inline constexpr std::string_view kNoLogEntriesAlert =
    "Kavor can't find any log entries on your Mac.\nYou can still browse logarchives, though.";
inline constexpr std::string_view kTimeFormatAlert =
    "Log time format is incorrect.\nPlease set the time in the Language & Region pane to 24-hour.";

// Brings the Language & Region pane forward on macOS, before the time-format alert.
inline constexpr std::string_view kSetClockScript =
    "tell application \"System Preferences\"\n"
    "activate\n"
    "set the current pane to pane id \"com.apple.Localization\"\n"
    "reveal anchor \"Language\" of pane id \"com.apple.Localization\"\n"
    "end tell";

// The tools. The group tool is the real one wherever Kavor runs, never one under the root.
inline constexpr std::string_view kGroupToolPath = "/usr/bin/id";
inline constexpr std::string_view kGroupToolOption = "-G";
inline constexpr std::string_view kLogToolPath = "/usr/bin/log";
inline constexpr std::array<std::string_view, 3> kLogShowLastArgs = {"show", "--last", "2"};
inline constexpr std::array<std::string_view, 5> kLogShowJsonLastArgs = {"show", "--style", "json",
                                                                         "--last", "2"};

// The clock setting and the tool's time stamps.
inline constexpr std::string_view kClockSampleText = "2021-04-07 18:22:06";
inline constexpr std::string_view kClockSamplePattern = "yyyy-MM-dd HH:mm:ss";
inline constexpr std::string_view kLogTimestampPattern = "yyyy-MM-dd HH:mm:ss.SSSSSSZZZ";
inline constexpr size_t kLogTimestampLength = 31;
inline constexpr size_t kTimestampsExamined = 10;

// The log store.
inline constexpr std::string_view kDiagnosticsPath = "/var/db/diagnostics";
inline constexpr std::string_view kPersistPath = "/var/db/diagnostics/Persist";
inline constexpr std::string_view kSpecialPath = "/var/db/diagnostics/Special";
inline constexpr std::string_view kSignpostPath = "/var/db/diagnostics/Signpost";
inline constexpr std::string_view kTimesyncPath = "/var/db/diagnostics/timesync";
inline constexpr std::string_view kUuidtextPath = "/var/db/uuidtext";

// The Log Check window.
inline constexpr std::string_view kLogCheckWindowId = "CheckLogWindow";
inline constexpr std::string_view kLogCheckFontSizeKey = "fontSizeLogCheck";

// The report, line by line; n is a count in decimal, written between a line's two parts.
inline constexpr std::string_view kReportHeading = "Unified log information:\n\n";
inline constexpr std::string_view kReportFilesHeading =
    "Check of log files at /var/db/diagnostics:\n";
inline constexpr std::string_view kReportLineStart = "\t";
inline constexpr std::string_view kReportDiagnosticsItems =
    " items in the path /var/db/diagnostics;\n";
inline constexpr std::string_view kReportPersistFiles = " files in the Persist folder;\n";
inline constexpr std::string_view kReportSpecialFiles = " files in the Special folder;\n";
inline constexpr std::string_view kReportSignpostFiles = " files in the Signpost folder;\n";
inline constexpr std::string_view kReportTimesyncFiles = " files in the timesync folder.\n";
inline constexpr std::string_view kReportUuidtextStart = "There are ";
inline constexpr std::string_view kReportUuidtextFolders =
    " folders in the /var/db/uuidtext folder.\n";
inline constexpr std::string_view kReportLogShowReturned = "log show --last 2 command returned ";
inline constexpr std::string_view kReportLogEntries = " log entries.\n";
inline constexpr std::string_view kReportLogShowWorks =
    "The log show command appears to be working correctly.";

inline constexpr std::string_view kOldestUnknown = "Couldn't determine the oldest log entry.\n";
inline constexpr std::string_view kOldestStart = "\nThe oldest log entry has a datestamp of ";
inline constexpr std::string_view kOldestBetween = ", ";
inline constexpr std::string_view kOldestEnd = " days ago.\n";
inline constexpr std::string_view kOldestUnknownDays = " unknown ";
inline constexpr std::string_view kOldestDatePattern = "yyyy-MM-dd'T'HH_mm_ssZZZZZ";
inline constexpr std::string_view kOldestDateZone = "GMT";
inline constexpr int kOldestDaysDigits = 4;  // significant digits at most

// What "log show --last 2" returned instead of its output: the leading space is part of it.
inline constexpr std::string_view kLogShowError = " error ";  // then the exit status
// Output that is no UTF-8 text, and a tool that could not be started, are reported like a
// failing tool, with the reason in place of a status.
inline constexpr std::string_view kLogShowErrorReason = " error: ";  // then the reason
inline constexpr std::string_view kLogShowNotUtf8 = "the output is not UTF-8 text";

}  // namespace kavor
