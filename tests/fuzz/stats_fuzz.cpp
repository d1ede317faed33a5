// The log daemon's statistics text, as found in an archive: files separated by NUL bytes, each read
// in both forms. Every name met must have a report and the sorted report must be theirs; a name
// is one piece of a line; the text form's report is its heading and tab-led lines, the CSV
// form's rows all end in the heading's name followed by three fields; CSV keeps a subset of the
// records in their order; and UTF-8 text in gives UTF-8 text out, never a character cut in two.

#include <simdjson.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "engine/archive/statistics_analysis.h"

namespace {

using kavor::StatisticsAnalysis;
using kavor::StatsForm;

void check(bool holds) {
  if (!holds) std::abort();
}

bool isUtf8(std::string_view text) {
  return simdjson::validate_utf8(text.data(), text.size());
}

// The sorted report holds every name's report once per time the name was met.
void checkReport(const StatisticsAnalysis& analysis) {
  size_t expected = 0;
  for (const std::string& name : analysis.theFileArray()) {
    const auto found = analysis.theStatsDict().find(name);
    check(found != analysis.theStatsDict().end());
    check(name.find_first_of("/\n\r\v\f") == std::string::npos);
    expected += found->second.size();
  }
  check(analysis.theStatsDict().size() <= analysis.theFileArray().size());
  check(analysis.sortedReport().size() == expected);
}

void checkText(std::string_view name, std::string_view report) {
  check(report.starts_with(std::string(name) + " ") && report.ends_with("\n"));
  size_t end = report.find('\n');
  check(report.substr(0, end).ends_with(":"));
  for (size_t start = end + 1; start < report.size(); start = end + 1) {
    end = report.find('\n', start);
    check(report[start] == '\t');
  }
}

void checkCsv(std::string_view name, std::string_view report) {
  std::string_view heading;
  for (size_t start = 0; start < report.size();) {
    const size_t end = report.find('\n', start);
    check(end != std::string_view::npos);
    std::string_view row = report.substr(start, end - start);
    for (int field = 0; field < 3; ++field) {
      const size_t comma = row.rfind(',');
      check(comma != std::string_view::npos);
      row = row.substr(0, comma);
    }
    check(heading.empty() || row == heading);
    heading = row;
    start = end + 1;
  }
  check(heading.empty() || heading.ends_with("," + std::string(name)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  StatisticsAnalysis text(StatsForm::text);
  StatisticsAnalysis csv(StatsForm::csv);
  for (size_t start = 0; start <= input.size();) {
    const size_t end = std::min(input.find('\0', start), input.size());
    text.analyseStatsText(input.substr(start, end - start));
    csv.analyseStatsText(input.substr(start, end - start));
    start = end + 1;
  }
  checkReport(text);
  checkReport(csv);
  for (const auto& [name, report] : text.theStatsDict())
    checkText(name, report);
  for (const auto& [name, report] : csv.theStatsDict())
    checkCsv(name, report);

  // A record CSV keeps, the text form keeps too, in the same order.
  const std::vector<std::string>& all = text.theFileArray();
  size_t at = 0;
  for (const std::string& name : csv.theFileArray()) {
    while (at < all.size() && all[at] != name)
      ++at;
    check(at++ < all.size());
  }

  if (isUtf8(input)) {
    check(isUtf8(text.sortedReport()) && isUtf8(csv.sortedReport()));
    for (const std::string& name : all)
      check(isUtf8(name));
  }
  return 0;
}
