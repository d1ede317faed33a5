#include "engine/shell/log_check_report.h"

#include <simdjson.h>
#include <unicode/locid.h>
#include <unicode/numberformatter.h>

#include <algorithm>

#include "engine/core/date_format.h"
#include "engine/shell/check_texts.h"

namespace kavor {

namespace {

constexpr double kSecondsPerDay = 86400.0;

std::string daysText(double days, std::string_view numberLocale) {
  const icu::Locale locale = numberLocale.empty() ? icu::Locale::getDefault()
                                                  : icu::Locale(std::string(numberLocale).c_str());
  UErrorCode status = U_ZERO_ERROR;
  // A plain number, as the platform's formatter gives it without a style: no grouping.
  const icu::UnicodeString text =
      icu::number::NumberFormatter::withLocale(locale)
          .precision(icu::number::Precision::maxSignificantDigits(kOldestDaysDigits))
          .grouping(UNUM_GROUPING_OFF)
          .formatDouble(days, status)
          .toString(status);
  std::string out;
  if (U_SUCCESS(status)) text.toUTF8String(out);
  return out.empty() ? std::string(kOldestUnknownDays) : out;
}

void appendLine(std::string& report, std::string_view start, size_t count, std::string_view end) {
  report += start;
  report += std::to_string(count);
  report += end;
}

}  // namespace

size_t countFolderItems(CheckSystem& system, std::string_view fixedPath, FolderName name,
                        std::string& report) {
  if (name == FolderName::asPath && !system.isFolder(fixedPath)) return 0;
  const auto names = system.listFolderNames(fixedPath);
  if (names) return names->size();
  // The system's words alone: the path they would name is the one under the system root.
  report += names.error().reason();
  report += ' ';
  return 0;
}

std::string describeOldestEntry(const Expected<std::vector<FolderItem>>& persist, double now,
                                std::string_view numberLocale) {
  if (!persist) return std::string(kOldestUnknown);
  double oldest = now;
  for (const FolderItem& item : *persist)
    if (!item.metadataError) oldest = std::min(oldest, item.created);
  const double days = (now - oldest) / kSecondsPerDay;
  const DateFormatter dates(kOldestDatePattern, kOldestDateZone);
  return std::string(kOldestStart) + dates.format(oldest) + std::string(kOldestBetween) +
         daysText(days, numberLocale) + std::string(kOldestEnd);
}

std::string describeOldestEntry(CheckSystem& system, std::string_view numberLocale) {
  const double now = system.now();
  if (!system.isFolder(kPersistPath))
    return describeOldestEntry(Error{ErrorKind::notFound, std::string(kPersistPath)}, now,
                               numberLocale);
  return describeOldestEntry(system.listFolder(kPersistPath), now, numberLocale);
}

std::string logShowLastText(const Expected<ToolOutput>& run) {
  if (!run) return std::string(kLogShowErrorReason) + run.error().reason();
  if (run->status != 0) return std::string(kLogShowError) + std::to_string(run->status);
  if (!simdjson::validate_utf8(run->output.data(), run->output.size()))
    return std::string(kLogShowErrorReason) + std::string(kLogShowNotUtf8);
  return run->output;
}

std::string runLogShowLast(CheckSystem& system) {
  return logShowLastText(system.runLogTool(kLogShowLastArgs));
}

std::string logCheckReport(CheckSystem& system, std::string_view numberLocale) {
  std::string report(kReportHeading);
  report += kReportFilesHeading;
  struct Count {
    std::string_view path;
    FolderName name;
    std::string_view start;
    std::string_view end;
  };
  static constexpr Count kCounts[] = {
      {kDiagnosticsPath, FolderName::asPath, kReportLineStart, kReportDiagnosticsItems},
      {kPersistPath, FolderName::asFolder, kReportLineStart, kReportPersistFiles},
      {kSpecialPath, FolderName::asFolder, kReportLineStart, kReportSpecialFiles},
      {kSignpostPath, FolderName::asFolder, kReportLineStart, kReportSignpostFiles},
      {kTimesyncPath, FolderName::asFolder, kReportLineStart, kReportTimesyncFiles},
      {kUuidtextPath, FolderName::asPath, kReportUuidtextStart, kReportUuidtextFolders},
  };
  for (const Count& count : kCounts) {
    // Counted first: an error text it appends stands in front of its line.
    const size_t n = countFolderItems(system, count.path, count.name, report);
    appendLine(report, count.start, n, count.end);
  }
  report += describeOldestEntry(system, numberLocale);
  report += '\n';

  const std::string out = runLogShowLast(system);
  // Pieces between line breaks, the empty one after a final break included.
  const size_t pieces = static_cast<size_t>(std::count(out.begin(), out.end(), '\n')) + 1;
  report += kReportLogShowReturned;
  if (pieces < 2) {
    report += out;
  } else {
    appendLine(report, {}, pieces, kReportLogEntries);
    report += kReportLogShowWorks;
  }
  return report;
}

}  // namespace kavor
