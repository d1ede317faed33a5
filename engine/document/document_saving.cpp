#include "engine/document/document_saving.h"

namespace kavor {

std::string saveTrailer(std::string_view theNowStr, const std::vector<std::string>& theFullCmdStr,
                        const std::optional<std::filesystem::path>& sourceFile) {
  std::string trailer = "\nAt ";
  trailer += theNowStr;
  if (sourceFile) return trailer + " from " + sourceFile->string();
  trailer += " for command log ";
  for (size_t i = 0; i < theFullCmdStr.size(); ++i) {
    if (i > 0) trailer += ' ';
    trailer += theFullCmdStr[i];
  }
  return trailer;
}

std::string savedStatus(const std::filesystem::path& path) {
  return "Saved to " + path.string();
}

}  // namespace kavor
