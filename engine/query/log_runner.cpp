#include "engine/query/log_runner.h"

#include <algorithm>

namespace kavor {

namespace {

constexpr std::string_view kParagraphSeparator = "\u2029";

// A line cut to its first bytes, at a character's start, with an ellipsis when cut.
void appendCutLine(std::string& text, std::string_view line) {
  if (line.size() <= kShownErrorLineBytes) {
    text += line;
    return;
  }
  size_t end = kShownErrorLineBytes;
  while (end > 0 && (static_cast<unsigned char>(line[end]) & 0xC0) == 0x80)
    --end;
  text += line.substr(0, end);
  text += "\u2026";
}

// What the tool said, as extra text after the fixed message: its first lines, and how many more
// there were, so that the alert fits on the screen however much it said.
std::string toolErrorExcerpt(std::string_view said, size_t lines) {
  std::string text;
  size_t shown = 0;
  for (size_t at = 0; at < said.size() && shown < kShownErrorLines; ++shown) {
    const size_t end = std::min(said.find('\n', at), said.size());
    if (shown) text += '\n';
    appendCutLine(text, said.substr(at, end - at));
    at = end + 1;
  }
  while (!text.empty() && (text.back() == '\n' || text.back() == ' '))
    text.pop_back();
  if (lines > shown) {
    const size_t more = lines - shown;
    text += '\n';
    text += kMoreLinesPrefix;
    text += std::to_string(more);
    text += more == 1 ? kMoreLineSuffix : kMoreLinesSuffix;
  }
  return text;
}

}  // namespace

LogShowCompletion completeLogShow(LogShowOutput&& output, Document& document, StylerInput style,
                                  const CompletionContext& context) {
  LogShowCompletion done;
  if (output.launchFailure) {
    done.alertText = std::string(kLogNotStartedPrefix) + output.launchFailure->message();
    return done;
  }
  if (!output.entries && output.entries.error().kind == ErrorKind::tooLarge) {
    done.alertText = output.entries.error().message();
    return done;
  }
  if (output.status != 0 && !output.endedEarly) {
    std::string text(kLogErrorPrefix);
    text += std::to_string(output.status);
    if (!output.standardError.empty()) {
      text += "\n\n";
      text += toolErrorExcerpt(output.standardError, output.standardErrorLines);
    }
    done.alertText = std::move(text);
    return done;
  }
  done.theNowStr = context.formatter.format(context.now);
  document.sourceFile.reset();
  if (!output.entries) {
    document.theJSONDictionaries = std::make_shared<const EntryList>();
    done.decodeError = output.entries.error();
    return done;
  }
  document.displayName =
      std::string(kDocumentNamePrefix) + context.formatter.format(context.startDate);
  takeDecodedEntries(std::move(*output.entries), document, std::move(style), context, done);
  return done;
}

void takeDecodedEntries(EntryList&& entries, Document& document, StylerInput style,
                        const CompletionContext& context, LogShowCompletion& done) {
  document.theJSONDictionaries = std::make_shared<const EntryList>(std::move(entries));
  done.redraw = true;
  done.displayName = document.displayName;
  style.entries = document.theJSONDictionaries.get();
  done.styleLater = context.mayStyleLater && !stylesQuickly(style);
  if (!done.styleLater) done.styled = styleEntries(style);
  done.queueChart = !context.dontShowGraphView && !document.theJSONDictionaries->empty();
}

size_t paragraphCount(std::string_view text) {
  size_t count = 0;
  size_t at = 0;
  while (at < text.size()) {
    const size_t end = text.find_first_of("\n\r\xE2", at);
    if (end == std::string_view::npos) return count + 1;
    if (text[end] == '\xE2' && text.substr(end, 3) != kParagraphSeparator) {
      at = end + 1;  // another character beginning with that byte
      continue;
    }
    ++count;
    at = end + (text[end] == '\xE2' ? 3 : 1);
    if (text[end] == '\r' && at < text.size() && text[at] == '\n') ++at;
  }
  return count;
}

}  // namespace kavor
