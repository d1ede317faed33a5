#include "engine/archive/statistics_analysis.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <stop_token>
#include <string>
#include <vector>

#include "platform/folders.h"
#include "tests/platform/temp_folder.h"

namespace kavor {
namespace {

using testing_support::writeFile;
using Lines = std::vector<std::string>;

const std::string kSeparator = "--- !logd statistics record\n";

// A rotate record as the daemon writes it: five lines about the file, a line per process, and
// the empty line after the final line feed.
std::string rotateRecord(std::string_view file, const Lines& processes,
                         std::string_view date = "2024-03-01 10:00:00+0000",
                         std::string_view newline = "\n") {
  std::string record = "type  : File Rotate\nfile  : " + std::string(file) +
                       "\ndate  : " + std::string(date) +
                       "\nsize  : 4096\nprocs : [ size, percent, process ]\n";
  for (const std::string& process : processes)
    record += process + std::string(newline);
  return record;
}

// Processes p0 to p(count-1) as the daemon writes them, and the lines the text form makes of them.
Lines shares(int count) {
  Lines lines;
  for (int i = 0; i < count; ++i)
    lines.push_back("    - [ 10" + std::to_string(i) + ", 1.50, /usr/libexec/p" +
                    std::to_string(i) + " ]");
  return lines;
}
std::string shown(int count) {
  std::string text;
  for (int i = 0; i < count; ++i)
    text += "\t10" + std::to_string(i) + " 1.50 p" + std::to_string(i) + "\n";
  return text;
}

std::string report(StatsForm form, std::string_view text) {
  StatisticsAnalysis analysis(form);
  analysis.analyseStatsText(text);
  return analysis.sortedReport();
}

TEST(StatisticsAnalysisTest, RecordLengthsRepeatedNamesAndOrder) {
  // 6 + n lines: one of 40 reads lines 5 to 24, one of 10 is left out, one of 11 reads lines 5
  // to 10. The piece before the first separator is a record too. A name met twice is reported
  // twice with its last record's text.
  StatisticsAnalysis analysis(StatsForm::text);
  analysis.analyseStatsText(rotateRecord("Persist/40", shares(34)) + kSeparator +
                            rotateRecord("Persist/10", shares(4)) + kSeparator + kSeparator +
                            rotateRecord("Persist/11", shares(6)));
  analysis.analyseStatsText(rotateRecord("Persist/11", shares(5), "2024-03-02 11:30:00+0000"));
  EXPECT_EQ(analysis.theFileArray(), (Lines{"40", "11", "11"}));
  const std::string eleven = "11 2024-03-02 11:30:00 4096:\n" + shown(5);
  EXPECT_EQ(analysis.sortedReport(),
            eleven + eleven + "40 2024-03-01 10:00:00 4096:\n" + shown(20));
}

TEST(StatisticsAnalysisTest, ProcessLinePieces) {
  EXPECT_EQ(report(StatsForm::text,
                   rotateRecord("Persist/0000000000000123.tracev3",
                                {"    - [ 4705, 10.81, /sbin/launchd ]", "    - [ 12, 3.5",
                                 "  - [ 5, 1.00, /bin/sh ]", "    - [ 7, 0.5, /usr/bin/é»",
                                 "    - [ 88, 2.00, /usr/sbin/syslogd ], 1, 2",
                                 "    - [ 31, 3.10,  kernel_task ]", "",
                                 "→→→→- [ 77,\u00a0\t6.5\u3000, /Applications/Café.app/Café ]",
                                 "    - [ 4, 0.1, /usr/bin/naïve  ]"})),
            "0000000000000123.tracev3 2024-03-01 10:00:00 4096:\n"
            "\t4705 10.81 launchd\n"
            "\t 1.00 sh\n"               // a size piece of eight characters or fewer: no size
            "\t7 0.5 \n"                 // characters, not bytes, come off the end
            "\t88 2.00 syslogd\n"        // pieces after the third are left alone
            "\t31 3.10   kernel_task\n"  // no "/": all of it, leading spaces kept
            "\t77 6.5 Café\n"            // and off the size's lead; every white space trimmed
            "\t4 0.1 naïve \n");         // the process is not trimmed
}

TEST(StatisticsAnalysisTest, WhatEachFormKeepsOfWhichRecord) {
  const Lines five = shares(5);
  // Records the daemon never writes: a date or size line without ": ".
  const auto broken = [&](const std::string& line) {
    std::string record = rotateRecord("Persist/broken", five);
    return record.replace(record.find(line + "  : "), line.size() + 4, line + "  =");
  };
  const std::string text =
      rotateRecord("Persist/123", {"    - [ 4705, 10.81, /sbin/launchd ]", "", "", "", "x, y",
                                   "    - [ 512, 1.18, /usr/libexec/logd ]"}) +
      kSeparator + rotateRecord("Persist/122", {"", "", "", "", ""}, "2024-02-28 23:59:59+0100") +
      kSeparator + rotateRecord("Special/0000000000000007.tracev3", five) + kSeparator +
      "type  : Statistics\ndate  : 2024-03-01 10:00:00+0000\nstore : 20971520\nfiles : 2\n" +
      kSeparator + "note\n" + rotateRecord("Persist/afternote", five) + kSeparator +
      broken("date") + kSeparator + broken("size") + kSeparator +
      rotateRecord("Persist/short", five, "+000") + kSeparator +
      rotateRecord("Persist/zone", five, "+0000") + kSeparator +
      rotateRecord("Persist/daily", five, "2024-03-01+0000");
  // CSV: no row for a record without processes, nor for a date without a space.
  EXPECT_EQ(report(StatsForm::csv, text),
            "2024-03-01,10:00:00,4096,123,4705,10.81,launchd\n"
            "2024-03-01,10:00:00,4096,123,512,1.18,logd\n");
  EXPECT_EQ(report(StatsForm::text, text),
            "122 2024-02-28 23:59:59 4096:\n"
            "123 2024-03-01 10:00:00 4096:\n\t4705 10.81 launchd\n\t512 1.18 logd\n"
            "daily 2024-03-01 4096:\n" +
                shown(5) + "zone  4096:\n" + shown(5));
}

TEST(StatisticsAnalysisTest, EveryNewlineCharacterCutsALine) {
  // CR LF after the processes leaves an empty line after each: lines 5 to 24 hold ten.
  EXPECT_EQ(report(StatsForm::text,
                   rotateRecord("Persist/2", shares(20), "2024-03-01 10:00:00+0000", "\r\n")),
            "2 2024-03-01 10:00:00 4096:\n" + shown(10));
  for (const std::string_view newline : {"\u2028", "\u2029", "\u0085", "\v", "\f"})
    EXPECT_EQ(
        report(StatsForm::text,
               rotateRecord("Persist/3", shares(4), "2024-03-01 10:00:00+0000", newline) + "\n"),
        "3 2024-03-01 10:00:00 4096:\n" + shown(4))
        << newline.size() << " bytes";
}

std::string analysed(const std::filesystem::path& archive, StatsForm form,
                     std::stop_token stop = {}) {
  TextOutput output;
  output.replaceOutputText("earlier output");
  runAnalysis(archive, form, output, stop);
  return output.text();
}

TEST(RunAnalysisTest, ReadsTheTextFilesOfExtraAndTellsOfWhatItCannotRead) {
  const testing_support::TempFolder archive;
  const std::filesystem::path extra = archive / "Extra";
  const std::string heading = "Analysis of " + archive.path().string() + " :\n";
  // Without Extra, the heading and the system's error alone; a typed path's trailing separator
  // stays out of the heading.
  const Expected<std::vector<std::string>> listing = listFolderNames(extra);
  ASSERT_FALSE(listing);
  EXPECT_EQ(analysed(archive.path().string() + "/", StatsForm::text),
            heading + listing.error().message());
  std::filesystem::create_directories(extra);
  EXPECT_EQ(analysed(archive.path(), StatsForm::text), heading);

  writeFile(extra / "logdata.statistics.0.txt", kSeparator + rotateRecord("Persist/2", shares(5)));
  writeFile(extra / "logdata.statistics.1.txt", rotateRecord("Persist/1", shares(5)));
  for (const char* other : {"statistics.log", "txt", "latin1.txt"})
    writeFile(extra / other, rotateRecord("Persist/0", shares(5)) + "caf\xe9\n");
  writeFile(extra / "empty.txt", "");
  // The unreadable file is told of where it is met, before the sorted report.
  EXPECT_EQ(analysed(archive.path(), StatsForm::text),
            heading + "cannot read " + (extra / "latin1.txt").string() + ": the text is not UTF-8" +
                "1 2024-03-01 10:00:00 4096:\n" + shown(5) + "2 2024-03-01 10:00:00 4096:\n" +
                shown(5));
  // A stop asked for before the first file leaves the heading alone.
  std::stop_source stop;
  stop.request_stop();
  EXPECT_EQ(analysed(archive.path(), StatsForm::csv, stop.get_token()),
            "date,time,totalsize,filename,size,percent,process\n");
}

}  // namespace
}  // namespace kavor
