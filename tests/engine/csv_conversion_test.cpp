// Headers by system version, full rows of every column, rows that are no record and the show
// switches are checked by the kavor-cli csv cases; these are the rules inside a row.

#include "engine/query/csv_conversion.h"

#include <gtest/gtest.h>

#include <string>

#include "engine/core/entry_decoder.h"

namespace kavor {
namespace {

// What follows an unsplit timestamp in a row of nothing else, before 13.
constexpr std::string_view kRestBefore13 = R"(,,"","","",,,,,,"","","","","","")"
                                           "\n";

// The CSV text after its header.
std::string rows(std::string_view json, int osVersion) {
  Expected<EntryList> list = decodeEntries(json);
  EXPECT_TRUE(list) << list.error().message();
  if (!list) return {};
  const std::string text = convertToCsv(*list, osVersion, {}).value_or("(nothing)");
  return text.substr(text.find('\n') + 1);
}

std::string rowOf(std::string_view object, int osVersion = 12) {
  return rows("[" + std::string(object) + "]", osVersion);
}

// The field of `key` in a row whose values hold no commas: while the timestamp fills one column,
// a key's column is its number.
std::string fieldOf(std::string_view row, EntryKey key) {
  size_t start = 0;
  for (int i = 0; i < static_cast<int>(key); ++i)
    start = row.find(',', start) + 1;
  return std::string(row.substr(start, row.find_first_of(",\n", start) - start));
}

std::string message(std::string_view text) {
  return fieldOf(rowOf(R"({"eventMessage" : ")" + std::string(text) + "\"}"),
                 EntryKey::eventMessage);
}

TEST(CsvConversion, TimestampSplitsFromTwentyNineCharacters) {
  const auto timestampRow = [](std::string_view timestamp) {
    return rowOf(R"({"timestamp" : ")" + std::string(timestamp) + "\"}");
  };
  const std::string rest(kRestBefore13);
  EXPECT_EQ(timestampRow("2020-11-16 10:20:30.123456+0"),
            R"("2020-11-16 10:20:30.123456+0")" + rest);
  EXPECT_EQ(timestampRow("2020-11-16 10:20:30.123456+00"),
            R"("2020-11-16","10:20:30.123456","+00")" + rest);
  // Characters, not bytes: the full-width digits take three bytes each.
  EXPECT_EQ(timestampRow("２０２０-11-16 10:20:30.123456+0000"),
            R"("２０２０-11-16","10:20:30.123456","+0000")" + rest);
  // Every space becomes a column break, also one after the time.
  EXPECT_EQ(timestampRow("2020-11-16 10:20:30.123456 +0000"),
            R"("2020-11-16","10:20:30.123456","","+0000")" + rest);
}

TEST(CsvConversion, MessageQuotesDoubledAndLineFeedsFlattened) {
  EXPECT_EQ(message(R"(say \"hi\")"), R"("say ""hi""")");
  EXPECT_EQ(message(R"(one\ntwo\n)"), R"("one two ")");
  // Values of one character are left alone, a lone quote or line feed included.
  EXPECT_EQ(message(R"(\")"), R"(""")");
  EXPECT_EQ(rowOf(R"({"eventMessage" : "\n"})"),
            "\"\",,\"\",\"\",\"\",,,,,,\"\n\",\"\",\"\",\"\",\"\",\"\"\n");
}

TEST(CsvConversion, LongMessagesKeep255WholeCharacters) {
  const std::string a254(254, 'a');
  EXPECT_EQ(message(std::string(300, 'a')), "\"" + a254 + "a\"");
  // The cut comes after the quotes are doubled, and may split a pair.
  EXPECT_EQ(message(a254 + R"(\"bc)"), "\"" + a254 + "\"\"");
  const std::string thumb = "\U0001F44D\U0001F3FD";  // with its skin tone: one character
  EXPECT_EQ(message(a254 + thumb + "bcd"), "\"" + a254 + thumb + "\"");
  // The accent belongs to the 255th character although the 255 bytes before it are plain.
  EXPECT_EQ(message(a254 + "e\u0301bc"), "\"" + a254 + "e\u0301\"");
  std::string accents;  // e and a combining accent: one character in three bytes
  for (int i = 0; i < 255; ++i)
    accents += "e\u0301";
  EXPECT_EQ(message(accents + "xyz"), "\"" + accents + "\"");
  EXPECT_EQ(message(accents.substr(0, 300)), "\"" + accents.substr(0, 300) + "\"");
}

TEST(CsvConversion, OnlyImagePathsAndMessageDoubleQuotes) {
  const std::string row =
      rowOf(R"({"processImagePath" : "\/a\"b", "senderImagePath" : "\"", "category" : "c\"d",)"
            R"( "subsystem" : "s\"\"t", "processImageUUID" : "u\"v"})");
  EXPECT_EQ(fieldOf(row, EntryKey::processImagePath), R"("/a""b")");
  EXPECT_EQ(fieldOf(row, EntryKey::senderImagePath), R"(""")");
  EXPECT_EQ(fieldOf(row, EntryKey::category), R"("c"d")");
  EXPECT_EQ(fieldOf(row, EntryKey::subsystem), R"("s""t")");
  EXPECT_EQ(fieldOf(row, EntryKey::processImageUUID), R"("u"v")");
}

TEST(CsvConversion, UnexpectedTypes) {
  EXPECT_EQ(
      rowOf(R"({"timestamp" : 5, "category" : null, "subsystem" : {"a" : 1}, "messageType" : true,
      "machTimestamp" : "12,5", "processUniqueID" : "abc", "threadID" : 2.5, "traceID" : true,
      "senderProgramCounter" : null, "processID" : {"a" : "b"}, "eventMessage" : 7,
      "activityIdentifier" : 18446744073709551615, "parentActivityIdentifier" : -1,
      "creatorActivityID" : "x\ny", "signpostID" : "q\"r", "source" : {"file" : "c.c"}})",
            15),
      R"("","12,5","","","",abc,2.5,true,null,"{""a"":""b""}","","","","","","","",)"
      R"(18446744073709551615,-1,"x)"
      "\n"
      R"(y","q""r","","","",null)"
      "\n");
}

// The first rows are converted before the rest; none may be lost or repeated between them.
TEST(CsvConversion, ManyEntriesAllWritten) {
  std::string json = "[{\"processID\":0}";
  for (int i = 1; i < 3000; ++i)
    json += ",{\"processID\":" + std::to_string(i) + "}";
  const std::string text = rows(json + "]", 12);
  size_t lines = 0;
  for (size_t at = 0; at < text.size(); at = text.find('\n', at) + 1, ++lines)
    ASSERT_EQ(fieldOf(std::string_view(text).substr(at), EntryKey::processID),
              std::to_string(lines));
  EXPECT_EQ(lines, 3000u);
}

}  // namespace
}  // namespace kavor
