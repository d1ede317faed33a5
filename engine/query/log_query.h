#pragma once
// The main window's query form turned into the log tool's argument list: the period field, the
// predicate box, the chosen source and the fetch switches give `theFullCmdStr` and the time
// window (`startDate`, `endDate`) that the document records. No widgets: the window copies its
// controls into a QueryInput and shows what comes back.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/core/combo_box_model.h"
#include "engine/core/date_format.h"
#include "engine/query/settings_texts.h"
#include "platform/settings_store.h"

namespace kavor {

// The pattern of the run's formatter: "--start", "--end" and the fetch time.
inline constexpr std::string_view kQueryDatePattern = "yyyy-MM-dd HH:mm:ss";

// The period field and its stepper share this range.
inline constexpr int64_t kSmallestTimePeriod = -1000;
inline constexpr int64_t kLargestTimePeriod = 1000;
// What an unreadable period text stands for; the field keeps the text.
inline constexpr int64_t kUnreadableTimePeriod = -10;

struct PeriodFromText {
  int64_t theTimePeriod = kUnreadableTimePeriod;
  bool readable = false;
  // The text the field shows instead of what was typed; only when the value was clamped.
  std::optional<std::string> writeBack;
};

// The period field's text read as a decimal number, a fraction cut off toward zero, then
// clamped to -1000..1000. Read: optional spaces or tabs around an optional sign ("+" or "-")
// and digits with at most one decimal point ("12", "-3.9", ".5", "7."). No exponent, no digit
// grouping: anything else is unreadable and gives -10.
PeriodFromText periodFromText(std::string_view text);

// The predicate a Get Log sends, or none. A typed box gives its text verbatim (even "none"); a
// selected row gives its entry's text unless that is "none" or empty; anything else gives none.
std::optional<std::string> predicateFromBox(const ComboBoxModel& box,
                                            const NamedList& specPredList);

// The live log is the source while `theSourcePath` is empty.
struct LogSource {
  std::string theSourcePath;
  bool theSourceLogarchive = false;
  bool theSourceFile = false;
};

// A path picked in the open panel: a "logarchive" extension makes it an archive, anything else
// a single file. Trailing slashes go, as they do from the path of a picked folder.
LogSource sourceFromPath(std::string_view path);
// The main window's title once a source is picked: "📕 " and the path's last component.
std::string sourceWindowTitle(std::string_view path);

struct QueryInput {
  int64_t theTimePeriod = kFactoryTimePeriod;  // after periodFromText
  int64_t unitIndex = 0;  // into timeUnitsList; -1 when nothing is selected (seconds)
  double baseDate = 0;    // absolute time of the base date picker
  std::optional<std::string> predicate;
  LogSource source;
  bool fetchInfo = true;
  bool fetchSignposts = true;
  bool fetchDebug = false;
  int osVersion = 11;
};

struct LogQuery {
  // The arguments after the program path, from "show" on.
  std::vector<std::string> theFullCmdStr;
  double startDate = 0;  // absolute times of the window
  double endDate = 0;
};

// formatter: the run's, with kQueryDatePattern; it writes "--start" and "--end".
LogQuery buildLogQuery(const QueryInput& input, const DateFormatter& formatter);

}  // namespace kavor
