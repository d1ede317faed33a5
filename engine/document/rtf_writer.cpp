#include "engine/document/rtf_writer.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string_view>

#include "engine/core/text_colours.h"

namespace kavor {

namespace {

// The default font of the view, for text that carries no font of its own.
constexpr std::string_view kDefaultFamily = "Helvetica";
constexpr int kDefaultHalfPoints = 24;
constexpr int kMaxHalfPoints = 32767;  // \fs takes a signed 16-bit value

constexpr int kGivenFont = 0;
constexpr int kDefaultFont = 1;

// The colour table lists TextColour in its own order after the automatic colour at index 0.
constexpr std::array<TextColour, 4> kTableColours = {TextColour::text, TextColour::red,
                                                     TextColour::green, TextColour::blue};
static_assert(static_cast<int>(TextColour::text) == 0 && static_cast<int>(TextColour::blue) == 3);
int colourIndex(TextColour colour) {
  return static_cast<int>(colour) + 1;
}

// Bytes written as they are: printable ASCII other than the three RTF reserves for itself.
constexpr std::array<bool, 256> kPlainBytes = [] {
  std::array<bool, 256> plain{};
  for (int c = 0x20; c < 0x7f; ++c)
    plain[c] = c != '\\' && c != '{' && c != '}';
  return plain;
}();
bool isPlain(char c) {
  return kPlainBytes[static_cast<uint8_t>(c)];
}

void appendNumber(std::string& out, int value) {
  char digits[12];
  out.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

void appendUnit(std::string& out, uint16_t unit) {
  out += "\\u";
  appendNumber(out, static_cast<int16_t>(unit));
  out += '?';
}

void appendCodePoint(std::string& out, UChar32 c) {
  if (c <= 0xffff) {
    appendUnit(out, static_cast<uint16_t>(c));
  } else {
    appendUnit(out, U16_LEAD(c));
    appendUnit(out, U16_TRAIL(c));
  }
}

int halfPoints(double pointSize) {
  if (!std::isfinite(pointSize) || pointSize <= 0) return kDefaultHalfPoints;
  return static_cast<int>(
      std::clamp<long>(std::lround(std::min(pointSize, 1e6) * 2), 1, kMaxHalfPoints));
}

// Writes the body, switching font and colour only when text that shows them is written.
class BodyWriter {
 public:
  BodyWriter(std::string& out, std::string_view text, int givenHalfPoints)
      : out_(out), text_(text), givenHalfPoints_(givenHalfPoints) {}

  void setFormat(int font, int colour) {
    font_ = font;
    colour_ = colour;
  }

  // For text that takes no formatting of its own, such as a font's name in the font table.
  void markFormatWritten() {
    writtenFont_ = font_;
    writtenColour_ = colour_;
  }

  // Writes the characters that start in [from, to) and returns where the next one starts: past
  // `to` when a character or a CR LF pair straddles it.
  size_t write(size_t from, size_t to) {
    size_t i = from;
    while (i < to) {
      const char c = text_[i];
      if (isPlain(c)) {
        size_t end = i + 1;
        while (end < to && isPlain(text_[end]))
          ++end;
        flushFormat();
        out_.append(text_.data() + i, end - i);
        i = end;
      } else if (static_cast<uint8_t>(c) >= 0x80) {
        i = writeNonAscii(i);
      } else {
        i = writeEscaped(i);
      }
    }
    return i;
  }

 private:
  size_t writeEscaped(size_t i) {
    const char c = text_[i];
    switch (c) {
      case '\\':
      case '{':
      case '}':
        flushFormat();
        out_ += '\\';
        out_ += c;
        break;
      case '\t':
        flushFormat();
        out_ += "\\tab ";
        break;
      case '\r':
        if (i + 1 < text_.size() && text_[i + 1] == '\n') ++i;
        [[fallthrough]];
      case '\n':
        flushFormat();
        out_ += "\\par\n";
        break;
      default:
        break;  // other controls show nothing
    }
    return i + 1;
  }

  size_t writeNonAscii(size_t i) {
    // A window of one character's most bytes keeps ICU's 32-bit offsets valid in any text.
    const auto* bytes = reinterpret_cast<const uint8_t*>(text_.data() + i);
    const int32_t length = static_cast<int32_t>(std::min<size_t>(U8_MAX_LENGTH, text_.size() - i));
    int32_t used = 0;
    UChar32 c = 0;
    U8_NEXT_OR_FFFD(bytes, used, length, c);
    flushFormat();
    appendCodePoint(out_, c);
    return i + static_cast<size_t>(used);
  }

  void flushFormat() {
    if (font_ == writtenFont_ && colour_ == writtenColour_) return;
    if (font_ != writtenFont_) {
      out_ += "\\f";
      appendNumber(out_, font_);
      out_ += "\\fs";
      appendNumber(out_, font_ == kGivenFont ? givenHalfPoints_ : kDefaultHalfPoints);
      writtenFont_ = font_;
    }
    if (colour_ != writtenColour_) {
      out_ += "\\cf";
      appendNumber(out_, colour_);
      writtenColour_ = colour_;
    }
    out_ += ' ';
  }

  std::string& out_;
  std::string_view text_;
  int givenHalfPoints_;
  int font_ = kGivenFont;
  int colour_ = colourIndex(TextColour::text);
  int writtenFont_ = -1;  // nothing written yet
  int writtenColour_ = -1;
};

void appendFontName(std::string& out, std::string_view family) {
  // A ';' would end the entry early; the rest is written as body text is.
  std::string name(family);
  std::replace(name.begin(), name.end(), ';', ' ');
  BodyWriter writer(out, name, kDefaultHalfPoints);
  writer.markFormatWritten();
  writer.write(0, name.size());
}

void appendHeader(std::string& out, const RtfFont& font) {
  out += "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fmodern\\fcharset0 ";
  appendFontName(out, font.family);
  out += ";}{\\f1\\fswiss\\fcharset0 ";
  out += kDefaultFamily;
  out += ";}}\n{\\colortbl;";
  for (TextColour colour : kTableColours) {
    const Rgb rgb = colourValue(colour, false);  // a saved document is read on white
    out += "\\red";
    appendNumber(out, rgb.red);
    out += "\\green";
    appendNumber(out, rgb.green);
    out += "\\blue";
    appendNumber(out, rgb.blue);
    out += ';';
  }
  out += "}\n";
}

}  // namespace

std::string rtfFromStyledText(const StyledText& text, const RtfFont& font, size_t fontedLength) {
  const std::string_view bytes = text.text;
  const size_t size = bytes.size();
  std::string out;
  // Mostly ASCII text grows by its formatting alone; one reservation spares the regrowth.
  out.reserve(size + size / 8 + 512);
  appendHeader(out, font);

  BodyWriter body(out, bytes, halfPoints(font.pointSize));
  size_t run = 0;
  for (size_t i = 0; i < size;) {
    while (run < text.runs.size() && text.runs[run].begin + text.runs[run].length <= i)
      ++run;
    TextColour colour = TextColour::text;
    size_t end = size;
    if (run < text.runs.size()) {
      const ColourRun& r = text.runs[run];
      if (r.begin <= i) {
        colour = r.colour;
        end = r.begin + r.length;
      } else {
        end = r.begin;
      }
    }
    if (i < fontedLength) end = std::min(end, fontedLength);
    body.setFormat(i < fontedLength ? kGivenFont : kDefaultFont, colourIndex(colour));
    i = body.write(i, std::min(end, size));
  }
  out += '}';
  return out;
}

}  // namespace kavor
