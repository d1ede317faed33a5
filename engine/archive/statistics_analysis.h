#pragma once
// The analysis of the log daemon's statistics files: their File Rotate records, file by file,
// as readable text or CSV. The files come from the Extra folder of a logarchive, where the
// builder puts the loose files of a log store. Their text is outside input: any bytes are read
// without harm.

#include <filesystem>
#include <map>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "engine/archive/archive_output.h"

namespace kavor {

enum class StatsForm { text, csv };

class StatisticsAnalysis {
 public:
  explicit StatisticsAnalysis(StatsForm form) : form_(form) {}

  // Every File Rotate record of one statistics file's text (UTF-8).
  void analyseStatsText(std::string_view text);
  // The report texts of theFileArray's names in sorted order; a name met twice is reported
  // twice, with the text of its last record.
  std::string sortedReport() const;

  // The rotated files' names in the order met, and the report text of each name's last record.
  const std::vector<std::string>& theFileArray() const { return theFileArray_; }
  const std::map<std::string, std::string, std::less<>>& theStatsDict() const {
    return theStatsDict_;
  }

 private:
  void parseRotateRecord(std::string_view record);

  StatsForm form_;
  std::vector<std::string> theFileArray_;
  std::map<std::string, std::string, std::less<>> theStatsDict_;
};

// The whole run on a logarchive folder: the heading, then the error texts of the Extra folder
// and of statistics files that cannot be read, in the order met, then the sorted report. Ends
// early, leaving what it wrote, when stop is requested.
void runAnalysis(const std::filesystem::path& archive, StatsForm form, ArchiveOutput& output,
                 std::stop_token stop = {});

}  // namespace kavor
