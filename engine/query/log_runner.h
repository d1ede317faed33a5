#pragma once
// The completion of one Get Log on the main thread: what the window must show once the log
// tool's run (engine/query/log_fetch.h) has handed back its output.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

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

// After the first lines of what the tool wrote on standard error: "… and 4980 more lines".
inline constexpr std::string_view kMoreLinesPrefix = "\u2026 and ";
inline constexpr std::string_view kMoreLinesSuffix = " more lines";
inline constexpr std::string_view kMoreLineSuffix = " more line";
inline constexpr size_t kShownErrorLines = 20;
inline constexpr size_t kShownErrorLineBytes = 300;

// What the run brings back to the main thread.
struct LogShowOutput {
  std::optional<Error> launchFailure;  // the tool could not be started at all
  // The tool's termination status: its exit status, or the number of the signal that ended it.
  int status = 0;
  // The output was known not to decode before the tool finished, so the tool was ended: its
  // status then says nothing of its own.
  bool endedEarly = false;
  std::string standardError;      // its first 64 KiB
  size_t standardErrorLines = 0;  // all it wrote there
  // The entries, or why there are none: the output does not decode (empty output included), or
  // it is too large to hold.
  Expected<EntryList> entries = Error{ErrorKind::parse, "the log tool was not run", 0};
};

struct LogShowCompletion {
  // The informative text of the alert "An error occurred in your last action:"; when set,
  // nothing else changes.
  std::optional<std::string> alertText;
  std::string theNowStr;  // set when the tool exited with 0
  // The output decoded: the window takes the title, text and counts below; else it keeps them.
  bool redraw = false;
  std::string displayName;
  StyledEntries styled;
  // The styling would take more than a moment and was left to the caller, which runs it off the
  // main thread; styled is then empty.
  bool styleLater = false;
  bool queueChart = false;           // collect the chart data of the document
  std::optional<Error> decodeError;  // why the output did not decode, when it did not
};

struct CompletionContext {
  const DateFormatter& formatter;  // the run's "yyyy-MM-dd HH:mm:ss" formatter
  double startDate = 0;            // absolute time the window starts at
  double now = 0;                  // absolute time the run completes at
  bool dontShowGraphView = false;
  bool mayStyleLater = false;  // the caller can style off the main thread (see styleLater)
};

// Main thread. On status 0 the document's entries are replaced (emptied when the output did not
// decode; it no longer comes from a file) and, when they decoded, its display name set.
// style.entries is taken from the document.
LogShowCompletion completeLogShow(LogShowOutput&& output, Document& document, StylerInput style,
                                  const CompletionContext& context);

// Main thread. Decoded entries become the document's, and done says what the window shows of
// them under the document's display name: a fetch's and an opened file's alike.
void takeDecodedEntries(EntryList&& entries, Document& document, StylerInput style,
                        const CompletionContext& context, LogShowCompletion& done);

// The paragraphs of a text as a text view counts them: each line feed, carriage return, CR LF
// pair or paragraph separator ends one, and text after the last makes one more.
size_t paragraphCount(std::string_view text);

}  // namespace kavor
