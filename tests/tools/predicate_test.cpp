#include "tools/log/predicate.h"

#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace kavor::standin {
namespace {

std::vector<LogEntry> fixedEntries() {
  std::vector<LogEntry> entries(5);
  LogEntry& backup = entries[0];
  backup.subsystem = "com.apple.TimeMachine";
  backup.category = "BackupScheduling";
  backup.eventMessage = "Starting automatic backup";
  backup.formatString = "Starting %s backup";
  backup.messageType = "Default";
  backup.eventType = "logEvent";
  backup.processID = 85;
  backup.processImagePath =
      "/System/Library/CoreServices/backupd.bundle/Contents/Resources/backupd";
  backup.senderImagePath = "/System/Library/PrivateFrameworks/TimeMachine.framework/TimeMachine";
  backup.traceID = 0xFFFFFFFFFFFFFFF0;

  LogEntry& kernel = entries[1];
  kernel.eventMessage = "IOUSB: error === device reset";
  kernel.messageType = "Error";
  kernel.eventType = "logEvent";
  kernel.processImagePath = "/kernel";
  kernel.senderImagePath = "/System/Library/Extensions/IOUSBHostFamily.kext/IOUSBHostFamily";
  kernel.threadID = 7;

  LogEntry& nimbet = entries[2];
  nimbet.subsystem = "co.tarnwick.nimbet";
  nimbet.category = "5";
  nimbet.eventMessage = "Café Résumé: STRASSE";
  nimbet.messageType = "Fault";
  nimbet.eventType = "logEvent";
  nimbet.processID = 501;
  nimbet.userID = 501;
  nimbet.processImagePath = "/Applications/Nimbet.app/Contents/MacOS/Nimbet";

  LogEntry& sync = entries[3];
  sync.subsystem = "com.apple.sync";
  sync.category = "05";
  sync.eventMessage = "Time Machine straße cafe\u0301";  // é decomposed
  sync.messageType = "Info";
  sync.eventType = "signpostEvent";
  sync.signpostName = "Refresh";
  sync.processID = 1234;
  sync.processImagePath = "/usr/libexec/syncd";

  LogEntry& activity = entries[4];
  activity.category = "2.5";
  activity.eventMessage = "ENTERPRISE ΣΊΣΥΦΟΣ";
  activity.formatString = "%{public}s * done";
  activity.eventType = "activityCreateEvent";  // no message type
  activity.processID = 77;
  return entries;
}

// Which of the fixed entries match, one character each: "10010" for the first and fourth.
std::string selection(const Predicate& predicate) {
  std::string chosen;
  for (const LogEntry& entry : fixedEntries())
    chosen += predicate.matches(entry) ? '1' : '0';
  return chosen;
}

// A predicate and what it should give: the selection, or the message it is refused with.
struct Case {
  const char* text;
  const char* expected;
};

void PrintTo(const Case& c, std::ostream* out) {
  *out << c.text;
}

class PredicateSelection : public testing::TestWithParam<Case> {};

TEST_P(PredicateSelection, TheEntriesItSays) {
  const Expected<Predicate> predicate = Predicate::parse(GetParam().text);
  ASSERT_TRUE(predicate.ok()) << predicate.error().message();
  EXPECT_EQ(selection(*predicate), GetParam().expected) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    PredicateCases, PredicateSelection,
    testing::Values(
        // Operators, keys by their other names, quotes and escapes.
        Case{R"(processID = 0)", "01000"}, Case{R"(subsystem != "com.apple.TimeMachine")", "01111"},
        Case{R"(subsystem <> "")", "10110"}, Case{R"(processID < 100)", "11001"},
        Case{R"(processID =< 85)", "11001"}, Case{R"(processID > 85)", "00110"},
        Case{R"(processID => 501)", "00110"}, Case{R"(subsystem BEGINSWITH "com.apple")", "10010"},
        Case{R"(subsystem endswith "nimbet")", "00100"}, Case{R"(subsystem ENDSWITH "")", "00000"},
        Case{R"(eventMessage Contains "Machine")", "00010"},
        Case{R"(eventMessage CONTAINS "machine")", "00000"}, Case{R"(subsystem < "com")", "01101"},
        Case{R"(process == "backupd")", "10000"}, Case{R"(process == "")", "00001"},
        Case{R"(sender ENDSWITH "Family")", "01000"},
        Case{R"(composedMessage BEGINSWITH "IOUSB")", "01000"},
        Case{R"(processIdentifier == 501)", "00100"},
        Case{R"(subsystem == 'co.tarnwick.nimbet')", "00100"},
        Case{R"(eventMessage CONTAINS "Caf\u00e9")", "00100"},
        Case{R"(subsystem IN {"com.apple.sync", 'co.tarnwick.nimbet'})", "00110"},
        Case{R"(subsystem IN {})", "00000"},
        // Message and event types by name and by number; no type is not equal to any.
        Case{R"(messageType == error)", "01000"}, Case{R"(messageType == "error")", "01000"},
        Case{R"(messageType == 16)", "01000"}, Case{R"(messageType == 0x10)", "01000"},
        Case{R"(logType == fault)", "00100"}, Case{R"(messageType > 2)", "01100"},
        Case{R"(messageType IN {default, "info"})", "10010"},
        Case{R"(messageType != error)", "10111"}, Case{R"(messageType < 100)", "11110"},
        Case{R"(eventType == logEvent)", "11100"}, Case{R"(eventType == 1536)", "00010"},
        Case{R"(eventType == "activityCreateEvent")", "00001"},
        Case{R"(eventType >= 1024)", "11110"},
        // Case and diacritics: composed matches decomposed, e is not é, ß folds to ss, the final
        // sigma to sigma, the Kelvin sign to k.
        Case{R"(eventMessage CONTAINS "afé")", "00100"},
        Case{R"(eventMessage CONTAINS[c] "CAFÉ")", "00110"},
        Case{R"(eventMessage CONTAINS[c] "cafe")", "00000"},
        Case{R"(eventMessage CONTAINS[d] "Cafe")", "00100"},
        Case{R"(eventMessage CONTAINS[cd] "CAFE")", "00110"},
        Case{R"(eventMessage CONTAINS[c] "strasse")", "00110"},
        Case{R"(eventMessage CONTAINS[c] "STRAßE")", "00110"},
        Case{R"(eventMessage CONTAINS[c] "σίσυφος")", "00001"},
        Case{R"(eventMessage CONTAINS[cd] "sisyphos")", "00000"},
        Case{R"(eventMessage CONTAINS[c] "enterprise")", "00001"},
        Case{R"(eventMessage CONTAINS[c] "bac\u212Aup")", "10000"},
        Case{R"(eventMessage CONTAINS[d] "Résumé")", "00100"},
        Case{R"(eventMessage BEGINSWITH[c] "starting")", "10000"},
        Case{R"(eventMessage ENDSWITH[cd] "resume: strasse")", "00100"},
        Case{R"(eventMessage ==[c] "time machine STRASSE café")", "00010"},
        Case{R"(eventMessage == "Time Machine straße café")", "00000"},
        Case{R"(subsystem ==[c] "COM.APPLE.TIMEMACHINE")", "10000"},
        Case{R"(subsystem !=[c] "COM.APPLE.TIMEMACHINE")", "01111"},
        Case{R"(subsystem IN[c] {"COM.APPLE.SYNC", "x"})", "00010"},
        // Whole-string patterns; ? takes a whole character.
        Case{R"(process LIKE "backup*")", "10000"}, Case{R"(process LIKE "backup")", "00000"},
        Case{R"(process LIKE "?ernel")", "01000"}, Case{R"(process LIKE[c] "*SYNC?")", "00010"},
        Case{R"(eventMessage LIKE "Caf? R*")", "00100"},
        Case{R"(eventMessage LIKE[cd] "*resume*")", "00100"},
        Case{R"(formatString LIKE "*\* done")", "00001"},
        Case{R"(formatString LIKE "*\*")", "00000"},
        Case{R"(subsystem MATCHES "com\.apple\..*")", "10010"},
        Case{R"(subsystem MATCHES "apple")", "00000"}, Case{R"(subsystem MATCHES "")", "01001"},
        Case{R"(eventMessage MATCHES[c] "café.*")", "00100"},
        Case{R"(subsystem MATCHES[c] "COM\.APPLE\.TIMEMACHINE")", "10000"},
        Case{R"(eventMessage MATCHES[d] "Cafe Resume.*")", "00100"},
        Case{R"(category MATCHES "\d+")", "00110"},
        Case{R"(processID MATCHES "[0-9]{2}")", "10001"},
        // Numbers against text and text against numbers.
        Case{R"(processID == "85")", "10000"}, Case{R"(processID == "eighty")", "00000"},
        Case{R"(processID != "eighty")", "11111"}, Case{R"(category == 5)", "00110"},
        Case{R"(category == "5")", "00100"}, Case{R"(category > 2)", "00111"},
        Case{R"(category < 2.6)", "00001"}, Case{R"(processID < 85.5)", "11001"},
        Case{R"(processID > 84.5)", "10110"}, Case{R"(processID == 85.0)", "10000"},
        Case{R"(processID > -5)", "11111"}, Case{R"(traceID == 0xFFFFFFFFFFFFFFF0)", "10000"},
        Case{R"(traceID > 9223372036854775807)", "10000"}, Case{R"(traceID > -1)", "11111"},
        Case{R"(traceID < 1e30)", "11111"}, Case{R"(threadID == 7)", "01000"},
        Case{R"(userID == 501)", "00100"}, Case{R"(processID IN {0, "85", 501})", "11100"},
        Case{R"(processID BETWEEN {80, 600})", "10100"},
        Case{R"(processID BEGINSWITH "8")", "10000"},
        // Logic: AND before OR, NOT before AND.
        Case{"TRUEPREDICATE", "11111"}, Case{"falsepredicate", "00000"},
        Case{R"(NOT processID == 0)", "10111"}, Case{R"(!(processID == 0))", "10111"},
        Case{"!!TRUEPREDICATE", "11111"},
        Case{R"(subsystem == "" OR processID == 85 AND category == "")", "01001"},
        Case{R"((subsystem == "" OR processID == 85) AND category == "")", "01000"},
        Case{R"(NOT subsystem == "" AND processID > 100)", "00110"},
        Case{R"(not (subsystem == "" and processID > 100))", "11111"},
        Case{R"(processID == 0 || processID == 77 && eventType == logEvent)", "01000"},
        Case{"\tprocessID\n==\r85 ", "10000"}));

class PredicateRefusal : public testing::TestWithParam<Case> {};

TEST_P(PredicateRefusal, SayingWhatAndWhere) {
  const Expected<Predicate> predicate = Predicate::parse(GetParam().text);
  ASSERT_FALSE(predicate.ok()) << GetParam().text;
  EXPECT_EQ(predicate.error().kind, ErrorKind::invalidInput);
  EXPECT_EQ(predicate.error().message(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    PredicateErrors, PredicateRefusal,
    testing::Values(
        Case{"subsystem == ", R"(predicate: expected a value after "==" at character 14)"},
        Case{"", "predicate: expected a comparison at character 1"},
        Case{"()", R"~(predicate: expected a comparison, found ")" at character 2)~"},
        Case{R"(subsystem == "a" AND)",
             R"(predicate: expected a comparison after "AND" at character 21)"},
        Case{R"~((subsystem == "a")~", R"~(predicate: missing ")" for the "(" at character 1)~"},
        Case{R"~(subsystem == "a"))~", R"~(predicate: unexpected ")" at character 17)~"},
        Case{R"(subsystem == "a" garbage)", R"(predicate: unexpected "garbage" at character 18)"},
        Case{R"(subsystem == "abc)", "predicate: unterminated string at character 14"},
        Case{R"(subsystem == 'a\')", "predicate: unterminated string at character 14"},
        Case{R"(subsystem == "\u12")", R"(predicate: invalid \u escape at character 15)"},
        Case{R"(subsystm == "a")", R"(predicate: unknown key "subsystm" at character 1)"},
        Case{R"(Subsystem == "a")", R"(predicate: unknown key "Subsystem" at character 1)"},
        Case{R"(subsystem IS "a")", R"(predicate: unknown operator "IS" at character 11)"},
        Case{R"(subsystem "a")",
             R"(predicate: expected an operator after "subsystem" at character 11)"},
        Case{R"(subsystem ~ "a")", R"(predicate: unexpected character "~" at character 11)"},
        Case{R"(subsystem == apple)",
             R"(predicate: expected a value after "==", found "apple" (text needs quotes) )"
             R"(at character 14)"},
        Case{R"(eventMessage CONTAINS[x] "a")",
             R"(predicate: unknown modifier "x", expected c, d or cd at character 23)"},
        Case{R"(eventMessage MATCHES "(unclosed")",
             R"(predicate: invalid regular expression "(unclosed" (U_REGEX_MISMATCHED_PAREN) )"
             R"(at character 22)"},
        Case{R"(subsystem IN "a")", R"(predicate: expected "{" after "IN" at character 14)"},
        Case{R"(subsystem IN {"a" "b"})",
             R"(predicate: expected "," or "}" after ""a"" at character 19)"},
        Case{R"(processID BETWEEN {1})",
             R"(predicate: "BETWEEN" takes two values, as in {1, 5} at character 19)"},
        Case{R"(messageType == warning)",
             R"(predicate: unknown message type "warning" at character 16)"},
        Case{R"(messageType == "Error")",
             R"(predicate: unknown message type "Error" at character 16)"},
        Case{R"(eventType == logevent)",
             R"(predicate: unknown event type "logevent" at character 14)"},
        Case{R"(traceID == 0x1FFFFFFFFFFFFFFFF)",
             R"(predicate: number out of range "0x1FFFFFFFFFFFFFFFF" at character 12)"},
        Case{R"(é == "a")", R"(predicate: unexpected character "é" at character 1)"},
        Case{R"("é" == "a")", R"(predicate: expected a comparison, found ""é"" at character 1)"}));

TEST(PredicateRefuses, NestingBeyondAnyPersonsNeed) {
  const std::string deep = std::string(1000, '(') + "TRUEPREDICATE" + std::string(1000, ')');
  const Expected<Predicate> predicate = Predicate::parse(deep);
  ASSERT_FALSE(predicate.ok());
  EXPECT_NE(predicate.error().message().find("nesting too deep"), std::string::npos);
  EXPECT_TRUE(Predicate::parse(std::string(50, '!') + "TRUEPREDICATE").ok());
}

TEST(PredicateCopies, MatchWithTheirOwnPatterns) {
  std::optional<Predicate> original;
  {
    Expected<Predicate> parsed = Predicate::parse(R"(subsystem MATCHES "com\..*")");
    ASSERT_TRUE(parsed.ok());
    original = std::move(*parsed);
  }
  Predicate copy = *original;
  original.reset();
  EXPECT_EQ(selection(copy), "10010");
  Predicate assigned = *Predicate::parse("FALSEPREDICATE");
  assigned = copy;
  EXPECT_EQ(selection(assigned), "10010");
}

TEST(PredicateChains, LongChainsMatchWithoutDeepRecursion) {
  std::string chain = "processID == 1";
  for (int i = 0; i < 20000; ++i)
    chain += " OR processID == " + std::to_string(i + 2);
  const Expected<Predicate> predicate = Predicate::parse(chain);
  ASSERT_TRUE(predicate.ok()) << predicate.error().message();
  EXPECT_EQ(selection(*predicate), "10111");
}

}  // namespace
}  // namespace kavor::standin
