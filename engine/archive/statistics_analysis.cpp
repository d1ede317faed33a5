#include "engine/archive/statistics_analysis.h"

#include <algorithm>
#include <initializer_list>
#include <optional>
#include <span>

#include "engine/archive/archive_texts.h"
#include "engine/archive/stats_text.h"

namespace kavor {

namespace {

using stats_text::piece;

// Lines 0 to 4 describe the rotated file; up to 20 process lines follow. A record of fewer lines
// than kMinRecordLines (the empty line after the final line feed included) is left out.
constexpr size_t kFirstProcessLine = 5;
constexpr size_t kLinesRead = 25;
constexpr size_t kMinRecordLines = 11;

// "date  : 2024-03-01 10:00:00+0000": the date and time without the zone's five characters.
constexpr size_t kZoneCharacters = 5;
// "    - [ 4705, 10.81, /sbin/launchd ]": the size follows the item's eight-character lead, the
// process ends in the list's two-character close.
constexpr size_t kSizeLead = 8;
constexpr size_t kProcessClose = 2;

struct ProcessShare {
  std::string_view size, percent, process;
};

// Lines cut short of three pieces hold no share; pieces beyond the third are left alone.
std::optional<ProcessShare> processShare(std::string_view line) {
  if (line.empty()) return std::nullopt;
  const std::optional<std::string_view> third = piece(line, ",", 2);
  if (!third) return std::nullopt;
  const std::string_view process = stats_text::dropLast(*third, kProcessClose).value_or("");
  return ProcessShare{stats_text::trimmed(stats_text::dropFirst(*piece(line, ",", 0), kSizeLead)),
                      stats_text::trimmed(*piece(line, ",", 1)),
                      stats_text::lastPiece(process, '/')};
}

void append(std::string& out, std::initializer_list<std::string_view> parts) {
  for (const std::string_view part : parts)
    out.append(part);
}

// The report of one record: in text form the heading and a line per share, in CSV form a row
// per share that repeats the heading's fields, and nothing when there is no share.
std::string processReport(StatsForm form, std::string_view heading,
                          std::span<const std::string_view> lines) {
  std::string report(form == StatsForm::text ? heading : std::string_view{});
  for (const std::string_view line : lines) {
    const std::optional<ProcessShare> share = processShare(line);
    if (!share) continue;
    if (form == StatsForm::text)
      append(report, {"\t", share->size, " ", share->percent, " ", share->process, "\n"});
    else
      append(report, {heading, ",", share->size, ",", share->percent, ",", share->process, "\n"});
  }
  return report;
}

}  // namespace

void StatisticsAnalysis::analyseStatsText(std::string_view text) {
  size_t start = 0;
  while (start <= text.size()) {
    const size_t found = text.find(kStatsRecordSeparator, start);
    const size_t end = found == std::string_view::npos ? text.size() : found;
    const std::string_view record = text.substr(start, end - start);
    if (record.starts_with(kFileRotatePrefix)) parseRotateRecord(record);
    start = end + kStatsRecordSeparator.size();
  }
}

// Records the daemon never writes (no ": " on the date or size line, a date shorter than its
// zone, or in CSV form a date without a time) are skipped whole.
void StatisticsAnalysis::parseRotateRecord(std::string_view record) {
  const std::vector<std::string_view> lines = stats_text::firstLines(record, kLinesRead);
  if (lines.size() < kMinRecordLines) return;
  const std::string_view name = piece(lines[1], "/", 1).value_or("");
  const std::optional<std::string_view> stamp = piece(lines[2], ": ", 1);
  const std::optional<std::string_view> size = piece(lines[3], ": ", 1);
  if (!stamp || !size) return;
  const std::optional<std::string_view> time = stats_text::dropLast(*stamp, kZoneCharacters);
  if (!time) return;

  std::string heading;
  if (form_ == StatsForm::text) {
    append(heading, {name, " ", *time, " ", *size, ":\n"});
  } else {
    const std::optional<std::string_view> clock = piece(*time, " ", 1);
    if (!clock) return;
    append(heading, {*piece(*time, " ", 0), ",", *clock, ",", *size, ",", name});
  }
  theFileArray_.emplace_back(name);
  theStatsDict_.insert_or_assign(
      std::string(name),
      processReport(form_, heading, std::span(lines).subspan(kFirstProcessLine)));
}

std::string StatisticsAnalysis::sortedReport() const {
  std::vector<std::string_view> names(theFileArray_.begin(), theFileArray_.end());
  std::sort(names.begin(), names.end());
  std::string report;
  for (const std::string_view name : names)
    if (const auto found = theStatsDict_.find(name); found != theStatsDict_.end())
      report += found->second;
  return report;
}

}  // namespace kavor
