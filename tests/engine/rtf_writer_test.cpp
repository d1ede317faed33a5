#include "engine/document/rtf_writer.h"

#include <gtest/gtest.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <cctype>
#include <random>
#include <string>
#include <string_view>

namespace kavor {
namespace {

constexpr std::string_view kTables =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fmodern\\fcharset0 Menlo;}"
    "{\\f1\\fswiss\\fcharset0 Helvetica;}}\n"
    "{\\colortbl;\\red0\\green0\\blue0;\\red215\\green0\\blue21;\\red0\\green128\\blue0;"
    "\\red0\\green90\\blue230;}\n";
const RtfFont kMenlo{"Menlo", 11};

// The body between the tables and the closing brace.
std::string body(const StyledText& text, size_t fontedLength = std::string::npos,
                 const RtfFont& font = kMenlo) {
  const std::string rtf = rtfFromStyledText(text, font, fontedLength);
  const size_t start = rtf.find("}\n", rtf.find("\\colortbl")) + 2;
  return rtf.substr(start, rtf.size() - start - 1);
}
std::string body(std::string_view text) {
  return body(StyledText{std::string(text), {}});
}

TEST(RtfWriterTest, SwitchesColourOnlyWhereItChanges) {
  const StyledText text{"Hi red\nblue end", {{3, 3, TextColour::red}, {7, 4, TextColour::blue}}};
  // The space that ends \cf1 is not the text's: " end" keeps its own.
  EXPECT_EQ(
      rtfFromStyledText(text, kMenlo, std::string::npos),
      std::string(kTables) + "\\f0\\fs22\\cf1 Hi \\cf2 red\\cf1 \\par\n\\cf4 blue\\cf1  end}");
  EXPECT_EQ(body(StyledText{"abcd", {{0, 2, TextColour::green}, {2, 2, TextColour::green}}}),
            "\\f0\\fs22\\cf3 abcd");
  EXPECT_EQ(body(StyledText{"x", {}}, 1, RtfFont{"Menlo", 10.3}), "\\f0\\fs21\\cf1 x");
}

TEST(RtfWriterTest, TextAfterTheFontedLengthIsInTheDefaultFont) {
  const StyledText text{"log\nAt now", {}};
  EXPECT_EQ(body(text, 4), "\\f0\\fs22\\cf1 log\\par\n\\f1\\fs24 At now");
  EXPECT_EQ(body(text, 0), "\\f1\\fs24\\cf1 log\\par\nAt now");
  // A run across the boundary keeps its colour; only the font changes.
  EXPECT_EQ(body(StyledText{"abcd", {{1, 2, TextColour::red}}}, 2),
            "\\f0\\fs22\\cf1 a\\cf2 b\\f1\\fs24 c\\cf1 d");
}

TEST(RtfWriterTest, EscapesWhatRtfReserves) {
  EXPECT_EQ(body("a\\b{c}\td"), "\\f0\\fs22\\cf1 a\\\\b\\{c\\}\\tab d");
  // Each line end is one paragraph, whichever convention it follows, even split by a run.
  EXPECT_EQ(body("a\r\nb\rc\n\nd\x01\x7f"), "\\f0\\fs22\\cf1 a\\par\nb\\par\nc\\par\n\\par\nd");
  EXPECT_EQ(body(StyledText{"a\r\nb", {{0, 2, TextColour::red}}}),
            "\\f0\\fs22\\cf2 a\\par\n\\cf1 b");
  // A semicolon would end the font's name in the table.
  EXPECT_NE(rtfFromStyledText({}, RtfFont{"A;B{}", 12}, 0).find("\\fcharset0 A B\\{\\};}"),
            std::string::npos);
}

TEST(RtfWriterTest, WritesNonAsciiAsSigned16BitUnits) {
  EXPECT_EQ(body("caf\xc3\xa9\xef\xbf\xbf"), "\\f0\\fs22\\cf1 caf\\u233?\\u-1?");
  // U+1F600 as the surrogate pair D83D DE00.
  EXPECT_EQ(body("\xf0\x9f\x98\x80!"), "\\f0\\fs22\\cf1 \\u-10179?\\u-8704?!");
  // One replacement character per broken sequence.
  EXPECT_EQ(body("\xff"
                 "a\xe2\x82"
                 "b\xc0\xaf\xf0\x9f"),
            "\\f0\\fs22\\cf1 \\u-3?a\\u-3?b\\u-3?\\u-3?\\u-3?");
}

// What a reader makes of the body: the text and, per byte of it, the \cf and \f in force. Reads
// \par, \tab, \uN?, \\, \{ and \}; skips other control words and every group below the top one.
struct Reading {
  std::string text, colours, fonts;
  bool operator==(const Reading&) const = default;
};

Reading readRtf(std::string_view rtf) {
  Reading r;
  int depth = 0;
  char colour = '?', font = '?';
  UChar lead = 0;
  auto put = [&](std::string_view bytes) {
    r.text += bytes;
    r.colours.append(bytes.size(), colour);
    r.fonts.append(bytes.size(), font);
  };
  auto isAlpha = [&](size_t i) { return std::isalpha(static_cast<unsigned char>(rtf[i])); };
  for (size_t i = 0; i < rtf.size();) {
    const char c = rtf[i++];
    if (c == '\\' && !isAlpha(i)) {
      if (depth == 1) put(rtf.substr(i, 1));
      ++i;
    } else if (c == '{' || c == '}') {
      depth += c == '{' ? 1 : -1;
    } else if (c != '\\') {
      if (depth == 1 && c != '\n') put(rtf.substr(i - 1, 1));
    } else {
      const size_t word = i;
      while (isAlpha(i))
        ++i;
      const std::string_view name = rtf.substr(word, i - word);
      const size_t number = i;
      while (rtf[i] == '-' || std::isdigit(static_cast<unsigned char>(rtf[i])))
        ++i;
      const std::string parameter(rtf.substr(number, i - number));
      if (rtf[i] == ' ') ++i;
      if (depth != 1) continue;
      if (name == "par") put("\n");
      if (name == "tab") put("\t");
      if (name == "cf") colour = parameter.at(0);
      if (name == "f") font = parameter.at(0);
      if (name != "u") continue;
      ++i;  // the stand-in character
      const auto unit = static_cast<UChar>(std::stoi(parameter));
      if (U16_IS_LEAD(unit)) {
        lead = unit;
        continue;
      }
      char utf8[U8_MAX_LENGTH];
      size_t length = 0;
      U8_APPEND_UNSAFE(utf8, length, lead ? U16_GET_SUPPLEMENTARY(lead, unit) : unit);
      put(std::string_view(utf8, length));
      lead = 0;
    }
  }
  return r;
}

void expectReadBack(const StyledText& text, size_t fontedLength) {
  const size_t size = text.text.size();
  Reading expected{text.text, std::string(size, '1'), std::string(size, '0')};
  for (const ColourRun& run : text.runs)
    expected.colours.replace(run.begin, run.length, run.length,
                             static_cast<char>('1' + static_cast<int>(run.colour)));
  if (fontedLength < size) expected.fonts.replace(fontedLength, size, size - fontedLength, '1');
  EXPECT_EQ(readRtf(rtfFromStyledText(text, kMenlo, fontedLength)), expected)
      << text.text << " to " << fontedLength;
}

TEST(RtfWriterTest, ReadsBackAsTheSameTextInTheSameColoursAndFonts) {
  // Pieces that meet control words: digits, '-' and spaces after a switch, escapes, pairs.
  const std::string_view pieces[] = {"a",       "Z",       "0", "-",  " ", "\t",
                                     "\n",      "\\",      "{", "}",  "?", "\\par ",
                                     "\\u123?", "{\\b x}", "é", "日", "👍", "\uFFFD\U0010FFFF"};
  std::mt19937 random(7);
  for (int round = 0; round < 300; ++round) {
    StyledText text;
    std::vector<size_t> starts;
    for (int i = static_cast<int>(random() % 24); i > 0; --i) {
      starts.push_back(text.text.size());
      text.text += pieces[random() % std::size(pieces)];
    }
    starts.push_back(text.text.size());
    // Runs over some of the pieces, apart and in order, sometimes touching.
    for (size_t i = 0; i + 1 < starts.size(); ++i) {
      if (random() % 3 != 0) continue;
      const size_t end = std::min(starts.size() - 1, i + 1 + random() % 3);
      text.runs.push_back(
          {starts[i], starts[end] - starts[i], static_cast<TextColour>(random() % 4)});
      i = end - 1;
    }
    expectReadBack(text, random() % 4 == 0 ? std::string::npos : starts[random() % starts.size()]);
  }
}

}  // namespace
}  // namespace kavor
