#include "cli/styled_output.h"

#include <unistd.h>

#include <cstdlib>
#include <string>

#include "cli/command.h"

namespace kavor::cli {

namespace {

constexpr size_t kOutputPiece = size_t{64} << 10;

std::string_view opening(TextColour colour, ColourMode mode) {
  const bool ansi = mode == ColourMode::ansi;
  switch (colour) {
    case TextColour::red:
      return ansi ? "\x1b[31m" : "<r>";
    case TextColour::green:
      return ansi ? "\x1b[32m" : "<g>";
    case TextColour::blue:
      return ansi ? "\x1b[34m" : "<b>";
    case TextColour::text:
      break;
  }
  return {};
}

std::string_view closing(TextColour colour, ColourMode mode) {
  if (mode == ColourMode::ansi) return "\x1b[39m";
  switch (colour) {
    case TextColour::red:
      return "</r>";
    case TextColour::green:
      return "</g>";
    case TextColour::blue:
      return "</b>";
    case TextColour::text:
      break;
  }
  return {};
}

}  // namespace

std::optional<ColourMode> colourModeFrom(std::string_view word) {
  if (word == "always") return ColourMode::ansi;
  if (word == "never") return ColourMode::plain;
  if (word == "markup") return ColourMode::markup;
  if (word == "auto") {
    const char* noColour = std::getenv("NO_COLOR");
    const bool wanted = ::isatty(STDOUT_FILENO) == 1 && !(noColour && *noColour);
    return wanted ? ColourMode::ansi : ColourMode::plain;
  }
  return std::nullopt;
}

void writeStyled(const StyledText& styled, ColourMode mode) {
  const std::string_view text = styled.text;
  if (mode == ColourMode::plain) {
    writeOut(text);
    return;
  }
  std::string out;
  size_t at = 0;
  for (const ColourRun& run : styled.runs) {
    out.append(text.substr(at, run.begin - at));
    out.append(opening(run.colour, mode));
    out.append(text.substr(run.begin, run.length));
    out.append(closing(run.colour, mode));
    at = run.begin + run.length;
    if (out.size() >= kOutputPiece) {
      writeOut(out);
      out.clear();
    }
  }
  out.append(text.substr(at));
  writeOut(out);
}

}  // namespace kavor::cli
