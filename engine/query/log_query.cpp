#include "engine/query/log_query.h"

#include <algorithm>
#include <cmath>

#include "engine/query/named_lists.h"
#include "engine/query/settings_texts.h"

namespace kavor {

namespace {

// The log tool's words, passed as they are.
constexpr std::string_view kShow = "show";
constexpr std::string_view kArchive = "--archive";
constexpr std::string_view kFile = "--file";
constexpr std::string_view kPredicate = "--predicate";
constexpr std::string_view kStyle = "--style";
constexpr std::string_view kJson = "json";
constexpr std::string_view kInfo = "--info";
constexpr std::string_view kSignpost = "--signpost";
constexpr std::string_view kDebug = "--debug";
constexpr std::string_view kStart = "--start";
constexpr std::string_view kEnd = "--end";

constexpr std::string_view kLogarchiveExtension = "logarchive";
// The closed-book symbol and one space.
constexpr std::string_view kSourceTitlePrefix = "\U0001F4D5 ";

// A period of 0 still fetches the minute before the base date.
constexpr double kZeroPeriodSeconds = 60;

bool isBlank(char c) {
  return c == ' ' || c == '\t';
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && isBlank(text.front()))
    text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back()))
    text.remove_suffix(1);
  return text;
}

// The whole part of a decimal number, saturating just past the clamp range so that any length
// of digits stays exact enough to clamp; none when the text is not such a number.
std::optional<int64_t> wholePartOf(std::string_view text) {
  text = trimmed(text);
  bool negative = false;
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
    negative = text.front() == '-';
    text.remove_prefix(1);
  }
  constexpr int64_t kSaturated = kLargestTimePeriod + 1;
  int64_t whole = 0;
  bool anyDigit = false;
  bool inFraction = false;
  for (const char c : text) {
    if (c == '.' && !inFraction) {
      inFraction = true;
    } else if (isDigit(c)) {
      anyDigit = true;
      if (!inFraction) whole = std::min(kSaturated, whole * 10 + (c - '0'));
    } else {
      return std::nullopt;
    }
  }
  if (!anyDigit) return std::nullopt;
  return negative ? -whole : whole;
}

// A picked folder's path has no trailing slash; the root stays "/".
std::string_view withoutTrailingSlashes(std::string_view path) {
  while (path.size() > 1 && path.back() == '/')
    path.remove_suffix(1);
  return path;
}

std::string_view lastComponent(std::string_view path) {
  path = withoutTrailingSlashes(path);
  if (path == "/") return path;
  const size_t slash = path.rfind('/');
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

// A leading dot marks a hidden name, not an extension.
std::string_view extensionOf(std::string_view path) {
  const std::string_view name = lastComponent(path);
  const size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0) return {};
  return name.substr(dot + 1);
}

double secondsPerUnit(int64_t unitIndex) {
  double seconds = 1;
  if (unitIndex >= 1) seconds *= 60;
  if (unitIndex >= 2) seconds *= 60;
  if (unitIndex >= 3) seconds *= 24;
  return seconds;
}

}  // namespace

PeriodFromText periodFromText(std::string_view text) {
  const std::optional<int64_t> whole = wholePartOf(text);
  if (!whole) return {};
  PeriodFromText period;
  period.readable = true;
  period.theTimePeriod = std::clamp(*whole, kSmallestTimePeriod, kLargestTimePeriod);
  if (period.theTimePeriod != *whole) period.writeBack = std::to_string(period.theTimePeriod);
  return period;
}

std::optional<std::string> predicateFromBox(const ComboBoxModel& box,
                                            const NamedList& specPredList) {
  std::string text = selectedListText(box, specPredList);
  // Only a row's "none" means no predicate: typed, it goes to the tool like any other text.
  if (text.empty() || (box.selectedIndex() >= 0 && text == kNoneName)) return std::nullopt;
  return text;
}

LogSource sourceFromPath(std::string_view path) {
  LogSource source;
  source.theSourcePath = std::string(withoutTrailingSlashes(path));
  source.theSourceLogarchive = extensionOf(path) == kLogarchiveExtension;
  source.theSourceFile = !source.theSourceLogarchive;
  return source;
}

std::string sourceWindowTitle(std::string_view path) {
  std::string title(kSourceTitlePrefix);
  title += lastComponent(path);
  return title;
}

LogQuery buildLogQuery(const QueryInput& input, const DateFormatter& formatter) {
  LogQuery query;
  std::vector<std::string>& args = query.theFullCmdStr;
  args.emplace_back(kShow);
  const LogSource& source = input.source;
  if ((source.theSourceLogarchive || source.theSourceFile) && !source.theSourcePath.empty()) {
    args.emplace_back(source.theSourceLogarchive ? kArchive : kFile);
    args.push_back(source.theSourcePath);
  }
  if (input.predicate && !input.predicate->empty()) {
    args.emplace_back(kPredicate);
    args.push_back(*input.predicate);
  }
  args.emplace_back(kStyle);
  args.emplace_back(kJson);
  if (input.fetchInfo) args.emplace_back(kInfo);
  if (input.osVersion >= kFirstSignpostOsVersion && input.fetchSignposts)
    args.emplace_back(kSignpost);
  if (input.fetchDebug) args.emplace_back(kDebug);

  // In double, so that no period, however far out of range, overflows.
  const double seconds =
      std::fabs(static_cast<double>(input.theTimePeriod)) * secondsPerUnit(input.unitIndex);
  const double base = input.baseDate;
  if (input.theTimePeriod < 0) {
    query.startDate = base - seconds;
    query.endDate = base;
  } else if (input.theTimePeriod == 0) {
    query.startDate = base - kZeroPeriodSeconds;
    query.endDate = base;
  } else {
    query.startDate = base;
    query.endDate = base + seconds;
  }
  args.emplace_back(kStart);
  args.push_back(formatter.format(query.startDate));
  args.emplace_back(kEnd);
  args.push_back(formatter.format(query.endDate));
  return query;
}

}  // namespace kavor
