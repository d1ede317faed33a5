#include "engine/shell/startup_checks.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "engine/shell/check_texts.h"
#include "tests/engine/fake_check_system.h"

namespace kavor {
namespace {

using testing_support::FakeCheckSystem;
using testing_support::filesNamed;

const std::string kStamp31 = "2020-11-16 10:00:00.123456+0000";

// An array of the given time stamps, each in an entry of its own.
std::string entriesStamped(const std::vector<std::string>& stamps) {
  std::string json = "[";
  for (const std::string& stamp : stamps)
    json += (json.size() > 1 ? ",{" : "{") + std::string("\"timestamp\" : \"") + stamp + "\"}";
  return json + "]\n";
}

bool ranLogTool(const FakeCheckSystem& system) {
  return std::any_of(system.runs.begin(), system.runs.end(),
                     [](const std::string& run) { return run.starts_with("log "); });
}

TEST(AdminCheck, ComparesWholePiecesWithTheLineBreakKeptOnTheLast) {
  const std::vector<std::string> admin = {"80"};
  EXPECT_TRUE(adminFromGroups("20 12 80 81\n", admin));
  EXPECT_TRUE(adminFromGroups("80", admin));
  EXPECT_TRUE(adminFromGroups("20  80 81\n", admin));  // an empty piece between two spaces
  EXPECT_FALSE(adminFromGroups("20 800 81\n", admin));
  EXPECT_FALSE(adminFromGroups("20 180 81\n", admin));
  EXPECT_FALSE(adminFromGroups("20 12 80\n", admin));
  EXPECT_FALSE(adminFromGroups("", admin));
  EXPECT_FALSE(adminFromGroups("20 \xff 80 81\n", admin));
  const std::vector<std::string> several = {"0", "27", "27\n"};
  EXPECT_TRUE(adminFromGroups("1000 27\n", several));
  EXPECT_FALSE(adminFromGroups("1000 270\n", several));
}

TEST(AdminCheck, AsksTheGroupToolAboutTheLoginName) {
  FakeCheckSystem system;
  EXPECT_TRUE(checkAdminUser(system));
  EXPECT_EQ(system.runs, std::vector<std::string>{"id ada"});
  system.groupTool = ToolOutput{1, "20 12\n"};
  EXPECT_FALSE(checkAdminUser(system));
  system.groupTool = Error{ErrorKind::io, "starting /usr/bin/id", ENOENT};
  EXPECT_FALSE(checkAdminUser(system));
}

TEST(FolderCheck, NeedsAFolderThatListsSomething) {
  FakeCheckSystem system;
  EXPECT_TRUE(checkFolderHasItems(system, kPersistPath));
  system.folders[std::string(kPersistPath)].listing = std::vector<FolderItem>{};
  EXPECT_FALSE(checkFolderHasItems(system, kPersistPath));
  system.removeFolder(std::string(kPersistPath));
  EXPECT_FALSE(checkFolderHasItems(system, kPersistPath));
  // A plain file of that name: not a folder, though something stands there.
  system.folders[std::string(kPersistPath)] = {false, filesNamed({"x"})};
  EXPECT_FALSE(checkFolderHasItems(system, kPersistPath));
  system.folders[std::string(kPersistPath)] = {true, Error{ErrorKind::io, "listing", EACCES}};
  EXPECT_FALSE(checkFolderHasItems(system, kPersistPath));
}

TEST(EntriesCheck, NeedsALineBreakFromASuccessfulRun) {
  EXPECT_TRUE(logHasEntries(0, "Timestamp  Thread\n"));
  EXPECT_TRUE(logHasEntries(0, "\n"));
  EXPECT_FALSE(logHasEntries(0, "Timestamp  Thread"));
  EXPECT_FALSE(logHasEntries(0, ""));
  EXPECT_FALSE(logHasEntries(1, "Timestamp  Thread\nentry\n"));
  EXPECT_FALSE(logHasEntries(0, "Timestamp\n\xc3\x28\n"));
  FakeCheckSystem system;
  EXPECT_TRUE(checkLogHasEntries(system));
  EXPECT_EQ(system.runs, std::vector<std::string>{"log show --last 2"});
}

TEST(TimeFormatCheck, ATwelveHourClockFailsWithoutRunningTheTool) {
  for (const char* sample :
       {"2021-04-07 06:22:06 PM", "2021-04-07 06:22:06 pm", "2021-04-07 06:22:06 a.m."}) {
    FakeCheckSystem system;
    system.clockSample = sample;
    EXPECT_FALSE(checkLogTimeFormat(system)) << sample;
    EXPECT_FALSE(ranLogTool(system)) << sample;
  }
  FakeCheckSystem unreadable;
  unreadable.clockSample.reset();
  EXPECT_FALSE(checkLogTimeFormat(unreadable));
  EXPECT_FALSE(ranLogTool(unreadable));

  FakeCheckSystem system;
  EXPECT_TRUE(checkLogTimeFormat(system));
  EXPECT_EQ(system.runs, std::vector<std::string>{"log show --style json --last 2"});
}

TEST(TimeFormatCheck, LooksAtTheFirstTenElementsOnly) {
  const std::vector<std::string> nine(9, "2020-11-16 10:00:00");
  std::vector<std::string> stamps = nine;
  stamps.push_back(kStamp31);
  EXPECT_TRUE(logTimestampsReadable(0, entriesStamped(stamps)));
  stamps.insert(stamps.begin(), "2020-11-16 10:00:00");
  EXPECT_FALSE(logTimestampsReadable(0, entriesStamped(stamps)));
  EXPECT_FALSE(logTimestampsReadable(0, entriesStamped(nine)));
  EXPECT_FALSE(logTimestampsReadable(0, "[]"));
  // Elements without a text time stamp are passed over, but they count among the ten.
  EXPECT_TRUE(logTimestampsReadable(
      0,
      "[3, {\"eventMessage\" : \"x\"}, {\"timestamp\" : 1605520800}, {\"timestamp\" : null}, "
      "{\"timestamp\" : \"" +
          kStamp31 + "\"}]"));
  EXPECT_FALSE(logTimestampsReadable(
      0, "[1, 2, 3, 4, 5, 6, 7, 8, 9, 10, {\"timestamp\" : \"" + kStamp31 + "\"}]"));
}

TEST(TimeFormatCheck, WantsThirtyOneCharactersThatReadAsAStamp) {
  // The 30- and 32-character stamps would read; their length alone rules them out.
  EXPECT_FALSE(logTimestampsReadable(0, entriesStamped({"2020-11-16 10:00:00.12345+0000"})));
  EXPECT_FALSE(logTimestampsReadable(0, entriesStamped({"2020-11-16 10:00:00.1234567+0000"})));
  EXPECT_FALSE(logTimestampsReadable(0, entriesStamped({"2020-11-16T10:00:00.123456+0000"})));
  EXPECT_TRUE(logTimestampsReadable(0, entriesStamped({"2020-11-16 10:00:00.123456-0500"})));
  // Characters, not bytes: a digit beyond ASCII reads as one and is one character.
  EXPECT_TRUE(logTimestampsReadable(0, entriesStamped({"2020-11-16 10:00:00.12345\u0666+0000"})));
  EXPECT_FALSE(logTimestampsReadable(0, entriesStamped({"2020-11-16 10:00:00.1234\u0665+0000"})));
  EXPECT_FALSE(logTimestampsReadable(1, entriesStamped({kStamp31})));
  EXPECT_FALSE(logTimestampsReadable(0, "{\"timestamp\" : \"" + kStamp31 + "\"}"));
  EXPECT_FALSE(logTimestampsReadable(0, "log: cannot read the store\n"));
}

TEST(StartupChecks, EveryOtherFailureIsToldInTurnAndTheRunGoesOn) {
  FakeCheckSystem system;
  system.folders[std::string(kPersistPath)].listing = std::vector<FolderItem>{};
  system.removeFolder(std::string(kTimesyncPath));
  system.logTool.clear();
  std::vector<StartupAlert> alerts;
  const StartupOutcome outcome =
      runStartupChecks(system, [&](const StartupAlert& alert) { alerts.push_back(alert); });
  ASSERT_EQ(alerts.size(), 4u);
  EXPECT_EQ(alerts[0].text, kNoLogFilesAlert);
  EXPECT_EQ(alerts[1].text, kNoTimesyncAlert);
  EXPECT_EQ(alerts[2].text, kNoLogEntriesAlert);
  EXPECT_EQ(alerts[3].text, kTimeFormatAlert);
  EXPECT_FALSE(alerts[2].opensClockSettings());
  EXPECT_TRUE(alerts[3].opensClockSettings());
  EXPECT_EQ(outcome.failed, 4);
  EXPECT_FALSE(outcome.quit);
}

TEST(StartupChecks, NoAdministratorEndsTheChecksAfterItsAlert) {
  FakeCheckSystem system;
  system.groupTool = ToolOutput{0, "20 12 800\n"};
  std::vector<std::string_view> alerts;
  const StartupOutcome outcome =
      runStartupChecks(system, [&](const StartupAlert& alert) { alerts.push_back(alert.text); });
  EXPECT_EQ(alerts, std::vector<std::string_view>{kNotAdminAlert});
  EXPECT_TRUE(outcome.quit);
  EXPECT_EQ(system.runs, std::vector<std::string>{"id ada"});
}

}  // namespace
}  // namespace kavor
