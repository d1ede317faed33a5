#include "engine/shell/log_check_report.h"

#include <gtest/gtest.h>

#include "engine/shell/check_texts.h"
#include "tests/engine/fake_check_system.h"

namespace kavor {
namespace {

using testing_support::FakeCheckSystem;
using testing_support::fileCreated;
using testing_support::kCheckNow;

constexpr double kDay = 86400.0;

std::string logShowPart(const std::string& report) {
  return report.substr(report.find(kReportLogShowReturned) + kReportLogShowReturned.size());
}

TEST(LogCheckReport, CountsTheStoreDatesItsOldestFileAndVouchesForTheTool) {
  FakeCheckSystem system;
  std::vector<FolderItem> persist = {fileCreated("0a.tracev3", kCheckNow - 3600),
                                     fileCreated("0b.tracev3", kCheckNow - 522000),
                                     fileCreated("0c.tracev3", kCheckNow - 90 * kDay)};
  // Unreadable metadata leaves the item out of the oldest date, not out of the count.
  persist[2].metadataError = Error{ErrorKind::io, "metadata", EACCES};
  system.folders[std::string(kPersistPath)].listing = persist;
  EXPECT_EQ(logCheckReport(system, "en_US"),
            "Unified log information:\n\n"
            "Check of log files at /var/db/diagnostics:\n"
            "\t3 items in the path /var/db/diagnostics;\n"
            "\t3 files in the Persist folder;\n"
            "\t1 files in the Special folder;\n"
            "\t0 files in the Signpost folder;\n"
            "\t1 files in the timesync folder.\n"
            "There are 3 folders in the /var/db/uuidtext folder.\n"
            "\nThe oldest log entry has a datestamp of 2023-03-02T19_26_40Z, 6.042 days ago.\n"
            "\n"
            "log show --last 2 command returned 3 log entries.\n"
            "The log show command appears to be working correctly.");
}

TEST(LogCheckReport, PutsErrorTextsInFrontOfTheirLines) {
  FakeCheckSystem system;
  for (const std::string_view path :
       {kDiagnosticsPath, kPersistPath, kSpecialPath, kSignpostPath, kTimesyncPath})
    system.removeFolder(std::string(path));
  system.folders[std::string(kUuidtextPath)] = {true, Error{ErrorKind::io, "listing", EACCES}};
  system.logShows("show --last 2", ToolOutput{5, "partial\noutput\n"});
  EXPECT_EQ(logCheckReport(system, "en_US"),
            "Unified log information:\n\n"
            "Check of log files at /var/db/diagnostics:\n"
            "\t0 items in the path /var/db/diagnostics;\n"
            "No such file or directory \t0 files in the Persist folder;\n"
            "No such file or directory \t0 files in the Special folder;\n"
            "No such file or directory \t0 files in the Signpost folder;\n"
            "No such file or directory \t0 files in the timesync folder.\n"
            "Permission denied There are 0 folders in the /var/db/uuidtext folder.\n"
            "Couldn't determine the oldest log entry.\n"
            "\n"
            "log show --last 2 command returned  error 5");
}

TEST(LogCheckReport, CountsThePiecesOfWhatLogShowPrinted) {
  FakeCheckSystem system;
  const auto shown = [&](Expected<ToolOutput> run) {
    system.logShows("show --last 2", std::move(run));
    return logShowPart(logCheckReport(system, "en_US"));
  };
  EXPECT_EQ(shown(ToolOutput{0, ""}), "");
  EXPECT_EQ(shown(ToolOutput{0, "one line"}), "one line");
  EXPECT_EQ(shown(ToolOutput{0, "one line\n"}),
            "2 log entries.\nThe log show command appears to be working correctly.");
  EXPECT_EQ(shown(ToolOutput{0, "header\n\xff\xfe\n"}), " error: the output is not UTF-8 text");
  EXPECT_EQ(shown(Error{ErrorKind::io, "starting the log tool", ENOENT}),
            " error: No such file or directory");
}

TEST(OldestEntry, DaysSinceTheOldestReadableItemInTheUsersLocale) {
  const auto days = [](std::vector<FolderItem> items, const char* locale) {
    const std::string text = describeOldestEntry(items, kCheckNow, locale);
    const size_t comma = text.find(", ");
    return text.substr(comma + 2, text.find(" days") - comma - 2);
  };
  const auto aged = [](double age) { return fileCreated("a", kCheckNow - age * kDay); };
  EXPECT_EQ(describeOldestEntry(std::vector<FolderItem>{}, kCheckNow, "en_US"),
            "\nThe oldest log entry has a datestamp of 2023-03-08T20_26_40Z, 0 days ago.\n");
  FolderItem unreadable = aged(3);
  unreadable.metadataError = Error{ErrorKind::io, "metadata", EACCES};
  EXPECT_EQ(days({unreadable}, "en_US"), "0");
  EXPECT_EQ(days({aged(1.5)}, "de_DE"), "1,5");
  EXPECT_EQ(days({aged(12345.6)}, "en_US"), "12350");
  EXPECT_EQ(days({aged(0.000123456)}, "en_US"), "0.0001235");
  EXPECT_EQ(describeOldestEntry(Error{ErrorKind::io, "listing", ENOENT}, kCheckNow),
            kOldestUnknown);
}

}  // namespace
}  // namespace kavor
