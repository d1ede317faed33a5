#pragma once
// One Get Log after its argument list is built: the log tool run on the window's processing
// queue with its output decoded as it arrives, then the completion on the main thread, which
// says what the window must show.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/core/date_format.h"
#include "engine/core/entry_list.h"
#include "engine/document/document.h"
#include "engine/query/entry_styler.h"
#include "platform/expected.h"

namespace kavor {

inline constexpr std::string_view kActionErrorMessage = "An error occurred in your last action:";
inline constexpr std::string_view kLogErrorPrefix = "log command returned error number ";
inline constexpr std::string_view kLogNotStartedPrefix = "log command could not be started: ";
inline constexpr std::string_view kDocumentNamePrefix = "Kavor_";

// What the run brings back to the main thread.
struct LogShowOutput {
  std::optional<Error> launchFailure;  // the tool could not be started at all
  int status = 0;
  std::string standardError;
  std::optional<EntryList> entries;  // none when the output did not decode, empty output too
};

// Runs on processingQueue; touches nothing shared.
LogShowOutput runLogShow(const std::filesystem::path& tool, const std::vector<std::string>& args);

struct LogShowCompletion {
  // The informative text of the alert "An error occurred in your last action:"; when set,
  // nothing else changes.
  std::optional<std::string> alertText;
  std::string theNowStr;  // set when the tool exited with 0
  // The output decoded: the window takes the title, text and counts below; else it keeps them.
  bool redraw = false;
  std::string displayName;
  StyledEntries styled;
  size_t lineCount = 0;
  bool queueChart = false;  // collect the chart data of the document
};

struct CompletionContext {
  const DateFormatter& formatter;  // the run's "yyyy-MM-dd HH:mm:ss" formatter
  double startDate = 0;            // absolute time the window starts at
  double now = 0;                  // absolute time the run completes at
  bool dontShowGraphView = false;
};

// Main thread. On status 0 the document's entries are replaced (emptied when the output did not
// decode) and, when they decoded, its display name set. style.entries is taken from the document.
LogShowCompletion completeLogShow(LogShowOutput&& output, Document& document, StylerInput style,
                                  const CompletionContext& context);

// The paragraphs of a text as a text view counts them: each line feed, carriage return, CR LF
// pair or paragraph separator ends one, and text after the last makes one more.
size_t paragraphCount(std::string_view text);

}  // namespace kavor
