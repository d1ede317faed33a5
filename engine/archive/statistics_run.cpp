// The analysis run over a logarchive's Extra folder, apart from the record reader so that the
// reader is fuzzed without the file system.

#include <simdjson.h>

#include <cstdint>

#include "engine/archive/archive_paths.h"
#include "engine/archive/archive_texts.h"
#include "engine/archive/statistics_analysis.h"
#include "platform/file_bytes.h"
#include "platform/folders.h"

namespace kavor {

namespace {

namespace fs = std::filesystem;

// The daemon keeps its statistics files small; a larger file is no statistics file worth
// holding in memory whole.
constexpr uint64_t kMaxStatsFileBytes = uint64_t{1} << 30;

// The text of one statistics file, or the description of why it has none to give.
Expected<std::string> statsText(const fs::path& file) {
  Expected<std::string> bytes = readFileBytes(file, kMaxStatsFileBytes);
  if (bytes && !simdjson::validate_utf8(bytes->data(), bytes->size()))
    return Error{ErrorKind::parse,
                 std::string(kStatsNotUtf8Lead) + file.string() + std::string(kStatsNotUtf8End)};
  return bytes;
}

}  // namespace

void runAnalysis(const fs::path& archive, StatsForm form, ArchiveOutput& output,
                 std::stop_token stop) {
  const std::string path = shownPath(archive);
  if (form == StatsForm::csv)
    output.replaceOutputText(kAnalysisCsvHeading);
  else
    output.replaceOutputText(std::string(kAnalysisHeading) + path + std::string(kHeadingEnd));

  const fs::path extra = fs::path(path) / kExtraFolder;
  const Expected<std::vector<std::string>> names = listFolderNames(extra);
  if (!names) {
    output.appendOutputText(names.error().message());
    return;
  }
  StatisticsAnalysis analysis(form);
  for (const std::string& name : *names) {
    if (stop.stop_requested()) return;
    if (extensionOf(name) != kStatsExtension) continue;
    const Expected<std::string> text = statsText(extra / name);
    if (!text)
      output.appendOutputText(text.error().message());
    else
      analysis.analyseStatsText(*text);
  }
  if (stop.stop_requested()) return;
  output.appendOutputText(analysis.sortedReport());
}

}  // namespace kavor
