// Colours are checked by the kavor-cli style cases, which write them as markup; a source present
// and absent by the style_mixed case.

#include "engine/query/entry_styler.h"

#include <gtest/gtest.h>

#include <string>

#include "engine/core/entry_decoder.h"
#include "engine/query/style_items.h"

namespace kavor {
namespace {

EntryList decoded(std::string_view json) {
  auto list = decodeEntries(json);
  EXPECT_TRUE(list.ok()) << json;
  return list ? std::move(*list) : EntryList{};
}

struct Styler {
  StylerInput input;
  explicit Styler(std::string_view style) {
    input.styleText = style;
    input.osVersion = 15;
    input.locale = "en_US";
  }
  Styler& filter(FilterChoice f) {
    input.filter = std::move(f);
    return *this;
  }
  std::string text(const EntryList& list) {
    input.entries = &list;
    return styleEntries(input).text.text;
  }
};

TEST(EntryStyler, NoDocumentGivesNoTextAndLeavesTheLabel) {
  StylerInput input;
  input.styleText = "0";
  const StyledEntries out = styleEntries(input);
  EXPECT_TRUE(out.text.text.empty());
  EXPECT_FALSE(out.entryCount.has_value());
}

TEST(StyleItems, NumbersAreReadLenientlyAndClamped) {
  const auto items = parseStyleText("  -4r 99 7x +3g 12b3 abc  ", 25);
  ASSERT_EQ(items.size(), 8u);  // leading and trailing spaces each give an empty item
  EXPECT_EQ(items[0], (StyleItem{0, FieldCut::none, TextColour::text}));
  EXPECT_EQ(items[1], (StyleItem{0, FieldCut::none, TextColour::red}));
  EXPECT_EQ(items[2].field, 25);
  EXPECT_EQ(items[3].field, 7);
  EXPECT_EQ(items[4], (StyleItem{3, FieldCut::none, TextColour::green}));
  EXPECT_EQ(items[5], (StyleItem{12, FieldCut::none, TextColour::blue}));
  EXPECT_EQ(items[6].field, 0);  // no digits
  EXPECT_EQ(items[7].field, 0);
  EXPECT_EQ(parseStyleText("20", 15)[0].field, 15);
}

TEST(StyleItems, LettersCountAnywhereWithTheirPrecedence) {
  EXPECT_EQ(parseStyleText("0dh", 25)[0].cut, FieldCut::timeOfDay);
  EXPECT_EQ(parseStyleText("d0", 25)[0].cut, FieldCut::dateAndTime);
  EXPECT_EQ(parseStyleText("0tTf", 25)[0].cut, FieldCut::none);  // cuts of other fields
  EXPECT_EQ(parseStyleText("5h", 25)[0].cut, FieldCut::none);    // cuts of field 0
  EXPECT_EQ(parseStyleText("5fTt", 25)[0].cut, FieldCut::first21);
  EXPECT_EQ(parseStyleText("5fT", 25)[0].cut, FieldCut::dropLast20);
  EXPECT_EQ(parseStyleText("5/f", 25)[0].cut, FieldCut::fileName);
  EXPECT_EQ(parseStyleText("f5", 25)[0].field, 0);  // the number must lead
  EXPECT_EQ(parseStyleText("5bgr", 25)[0].colour, TextColour::red);
  EXPECT_EQ(parseStyleText("5bg", 25)[0].colour, TextColour::green);
  EXPECT_EQ(parseStyleText("5R", 25)[0].colour, TextColour::text);  // case matters
}

TEST(EntryStyler, FieldsByNumberKindAndSystem) {
  const EntryList list = decoded(R"([{"timestamp" : "2020-05-01 09:41:07.123456+0100",
    "timezoneName" : "CET", "source" : null, "processID" : "85", "category" : 12,
    "signpostName" : "Sp"}, {"eventMessage" : "x"}])");
  EXPECT_EQ(Styler("").text(list), "2020-05-01 09:41:07.123456+0100 \n \n");
  EXPECT_EQ(Styler("9 3").text(list), "85 12 \n  \n");  // values of the other kind
  Styler old("20 21");
  old.input.osVersion = 12;  // 16 fields: 20 reads as 15, timezoneName
  EXPECT_EQ(old.text(list), "CET CET \n  \n");
  Styler of13("21");
  of13.input.osVersion = 13;  // 21 is "source" on 10.13
  EXPECT_EQ(of13.text(list), "null \n \n");
}

TEST(EntryStyler, TimestampCutsAndShortTimestamps) {
  const EntryList list = decoded(R"([{"timestamp" : "2020-05-01 09:41:07.123456+0100"},
    {"timestamp" : "2020-05-01 09:41"}, {"timestamp" : "2020-05-01 09:41:07.123456"},
    {"timestamp" : "2020-05-0é 09:41:07.12345😀+0100"}, {}])");
  EXPECT_EQ(Styler("0h").text(list),
            "09:41:07.123456 \n2020-05-01 09:41 \n09:41:07.123456 \n09:41:07.12345😀 \n \n");
  EXPECT_EQ(Styler("0d").text(list),
            "2020-05-01 09:41:07.123456 \n2020-05-01 09:41 \n2020-05-01 09:41:07.123456 \n"
            "2020-05-0é 09:41:07.12345😀 \n \n");
}

TEST(EntryStyler, CutsCountUserPerceivedCharacters) {
  // 22 characters: an e with two combining marks, a family emoji, a flag, then 19 letters.
  const std::string text = "e\u0301\u0323👨‍👩‍👧🇫🇷abcdefghijklmnopqrs";
  const EntryList list = decoded(R"([{"subsystem" : ")" + text + R"("}])");
  EXPECT_EQ(Styler("4t").text(list),
            "e\u0301\u0323👨‍👩‍👧🇫🇷abcdefghijklmnopqr \n");
  // T keeps the beginning: 22 - 20 = 2 characters.
  EXPECT_EQ(Styler("4T").text(list), "e\u0301\u0323👨‍👩‍👧 \n");
  // Exactly 21 characters: t keeps all, T keeps the first one.
  const EntryList exact = decoded(R"([{"subsystem" : "ü😀abcdefghijklmnopqrs"}])");
  EXPECT_EQ(Styler("4t").text(exact), "ü😀abcdefghijklmnopqrs \n");
  EXPECT_EQ(Styler("4T").text(exact), "ü \n");
  // Under 21: both leave the text whole; a CR LF pair is one character.
  const EntryList shorter = decoded(R"([{"subsystem" : "abcdefghij\r\nklmnopqrs"}])");
  EXPECT_EQ(Styler("4T").text(shorter), "abcdefghij\r\nklmnopqrs \n");
}

TEST(EntryStyler, FileNameCut) {
  const EntryList list = decoded(R"([{"processImagePath" : "\/usr\/libexec\/xpcproxy",
    "senderImagePath" : "libxpc.dylib", "category" : "ends\/"}])");
  EXPECT_EQ(Styler("11fr 13fg 3f").text(list), "xpcproxy libxpc.dylib  \n");
}

// Entries of each event type, with a message naming the type.
constexpr std::string_view kTypes = R"([
  {"eventType" : "logEvent", "eventMessage" : "log"},
  {"eventType" : "signpostEvent", "eventMessage" : "signpost"},
  {"eventType" : "activityCreateEvent", "eventMessage" : "activity"},
  {"eventType" : "traceEvent", "eventMessage" : "trace"},
  {"eventType" : 1024, "eventMessage" : "numeric"},
  {"eventMessage" : "untyped"},
  7,
  {"eventType" : "logEvent"}])";

TEST(EntryStyler, TypeTestHidesOnlyTheThreeNamedTypesAndAFilterNeedsAMessage) {
  const EntryList list = decoded(kTypes);
  // Row 0 filters nothing, whatever its text.
  Styler s("10");
  EXPECT_EQ(s.filter(FilterChoice::none()).text(list), "log \ntrace \nnumeric \nuntyped \n \n \n");
  s.input.show = {.showLogEntries = false, .showSignposts = true, .showActivities = true};
  EXPECT_EQ(s.text(list), "signpost \nactivity \ntrace \nnumeric \nuntyped \n \n");

  EXPECT_EQ(Styler("10").filter(FilterChoice::typed("T")).text(list), "trace \nuntyped \n");
  // Emptied by hand: an empty text is in no message.
  EXPECT_EQ(Styler("10").filter(FilterChoice::typed("")).text(list), "");
  // A message of another type is searched in its plain text form.
  const EntryList numeric = decoded(R"([{"eventMessage" : 1024}, {"eventMessage" : null}])");
  EXPECT_EQ(Styler("10").filter(FilterChoice::typed("02")).text(numeric), "1024 \n");
}

TEST(LogFilter, RegularExpressionsOnlyUnderAStarName) {
  const EntryList list = decoded(R"j([{"eventMessage" : "backup failed"},
    {"eventMessage" : "mount failure"}, {"eventMessage" : "fail(ed|ure)"},
    {"eventMessage" : "FAILED"}, {"eventMessage" : "line one\nfailed"}])j");
  // Without the star the text is plain, as the kavor-cli style_sample_literal case shows.
  EXPECT_EQ(Styler("10").filter(FilterChoice::row("*fails", "fail(ed|ure)")).text(list),
            "backup failed \nmount failure \nline one\nfailed \n");
  // No options: case matters, and ^ and $ only match at the ends of the message.
  EXPECT_EQ(Styler("10").filter(FilterChoice::row("*", "^failed")).text(list), "");
  // A text that does not compile falls back to the plain text.
  EXPECT_EQ(Styler("10").filter(FilterChoice::row("*bad", "fail(")).text(list), "fail(ed|ure) \n");
  LogFilter broken(FilterChoice::row("*bad", "fail("));
  EXPECT_FALSE(broken.isRegularExpression());
  LogFilter good(FilterChoice::row("*", "a+"));
  EXPECT_TRUE(good.isRegularExpression());
}

TEST(LogFilter, PlainTextIgnoresCaseAsTheLanguageDoes) {
  struct Case {
    const char* text;
    const char* message;
    const char* locale;
    bool found;
  };
  const Case cases[] = {
      {"ERROR", "an error occurred", "en_US", true},
      {"straße", "STRASSE closed", "de_DE", true},
      {"CAFÉ", "le cafe\u0301 noir", "fr_FR", true},  // composed against decomposed
      {"cafe", "le café noir", "fr_FR", false},       // e is not é
      {"cafe", "le cafe\u0301 noir", "fr_FR", false},
      {"ΣΊΣΥΦΟΣ", "σίσυφος", "el_GR", true},
      {"kelvin k", "KELVIN \u212A", "en_US", true},
      {"istanbul", "ISTANBUL", "en_US", true},
      {"istanbul", "ISTANBUL", "tr_TR", false},  // Turkish: I pairs with ı
      {"istanbul", "İSTANBUL", "tr_TR", true},
      {"ırmak", "IRMAK", "tr_TR", true},
      {"", "anything", "en_US", false},
      {"x", "", "en_US", false},
      // A match begins and ends between whole characters.
      {"가", "각", "ko_KR", false},  // a Hangul syllable inside a longer one
      {"가", "가각", "ko_KR", true},
      {"가", "\u1100\u1161\u11a8", "ko_KR", false},  // the same from its jamo
      {"\u1100\u1161", "각", "ko_KR", false},
      {"🇬", "🇬🇧", "en_GB", false},  // one letter of a flag
      {"🇧", "🇬🇧", "en_GB", false},
      {"🇧🇪", "🇬🇧🇪🇸", "en_GB", false},  // across two flags
      {"🇬🇧", "🇬🇧🇪🇸", "en_GB", true},
      {"👨", "👨\u200d👩\u200d👧", "en_US", false},  // a member of a joined family
      {"\u0301", "cafe\u0301", "fr_FR", false},  // the mark of a letter
      {"\n", "one\r\ntwo", "en_US", false},      // half of a CR LF pair
      {"one\r", "one\r\ntwo é", "en_US", false},
      {"one\r\n", "one\r\ntwo", "en_US", true},
  };
  for (const Case& c : cases) {
    LogFilter filter(FilterChoice::typed(c.text), c.locale);
    EXPECT_EQ(filter.matches(c.message), c.found) << c.text << " in " << c.message;
  }
}

TEST(LogFilter, ChoiceFromTheBox) {
  const NamedList list = {{"none", "ignored"}, {"*fails", "fail(ed|ure)"}};
  ComboBoxModel box;
  for (const ListEntry& e : list)
    box.addItem(e.name);
  box.selectItem(0);
  EXPECT_FALSE(filterChoiceFromBox(box, list).active);
  box.selectItem(1);
  const FilterChoice row = filterChoiceFromBox(box, list);
  EXPECT_EQ(row.name, "*fails");
  EXPECT_EQ(row.text, "fail(ed|ure)");
  box.typeText("*typed");
  const FilterChoice typed = filterChoiceFromBox(box, list);
  EXPECT_TRUE(typed.active);
  EXPECT_EQ(typed.name, "*typed");
  EXPECT_EQ(typed.text, "*typed");
}

// Entries alternating logEvent and signpostEvent, the signposts holding "match".
std::string alternating(int n) {
  std::string json = "[";
  for (int i = 0; i < n; ++i) {
    if (i) json += ",";
    json += i % 2 ? R"({"eventType" : "signpostEvent", "eventMessage" : "match )"
                  : R"({"eventType" : "logEvent", "eventMessage" : "other )";
    json += std::to_string(i) + "\"}";
  }
  return json + "]";
}

size_t lines(const std::string& text) {
  return static_cast<size_t>(std::count(text.begin(), text.end(), '\n'));
}

TEST(EntryStyler, LimitCountsEntriesPassingTheTypeTest) {
  const EntryList list = decoded(alternating(500));
  Styler s("10");
  s.input.theLogCap = 100;
  EXPECT_EQ(lines(s.text(list)), 101u);  // the walk stops once the count exceeds the cap
  s.input.show.showSignposts = true;
  EXPECT_EQ(lines(s.text(list)), 101u);
  // Entries that fail the filter still count: of the first 101, 50 are signposts.
  s.filter(FilterChoice::typed("MATCH"));
  EXPECT_EQ(lines(s.text(list)), 50u);
  s.input.limitEntries = false;
  EXPECT_EQ(lines(s.text(list)), 250u);
  EXPECT_EQ(styleEntries(s.input).entryCount, "500");
  EXPECT_FALSE(styleEntries(s.input).limitCut);
}

TEST(EntryStyler, LimitSaysWhenItCutAndOfHowMany) {
  const EntryList list = decoded(alternating(2500));
  Styler s("10");
  s.input.theLogCap = 999;
  // Of the 1250 log events, the first 1000 are shown; the hidden signposts are not counted.
  s.input.entries = &list;
  const StyledEntries out = styleEntries(s.input);
  EXPECT_EQ(out.limitCut, (LimitCut{1000, 1250}));
  EXPECT_EQ(out.limitNotice, "Showing the first 1,000 of 1,250 entries: the entry limit is on");
  s.input.show.showSignposts = true;
  EXPECT_EQ(styleEntries(s.input).limitCut, (LimitCut{1000, 2500}));
  // Stopped with nothing left that the limit would count: no cut.
  s.input.theLogCap = 2499;
  EXPECT_FALSE(styleEntries(s.input).limitNotice);
  s.input.theLogCap = 1249;
  s.input.show.showSignposts = false;
  EXPECT_FALSE(styleEntries(s.input).limitCut);
  s.input.theLogCap = 1248;
  EXPECT_EQ(styleEntries(s.input).limitCut, (LimitCut{1249, 1250}));
  // Entries without a text type, and elements that are not objects, always count.
  const EntryList mixed = decoded(R"([{"eventType" : "logEvent"}, {"eventType" : "logEvent"}, 3,
    {"eventType" : 7}, {"eventType" : "activityCreateEvent"}, {}])");
  s.input.entries = &mixed;
  s.input.theLogCap = 0;
  EXPECT_EQ(styleEntries(s.input).limitCut, (LimitCut{1, 5}));
  // The numbers as the locale groups them.
  EXPECT_EQ(limitNotice({1000, 30020}, "de_DE"),
            "Showing the first 1.000 of 30.020 entries: the entry limit is on");
}

}  // namespace
}  // namespace kavor
