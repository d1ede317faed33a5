#include "engine/archive/log_store_catalogue.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>

#include "engine/archive/archive_paths.h"
#include "engine/archive/archive_texts.h"

namespace kavor {

std::string catalogueLine(std::string_view label, const FolderItem& item,
                          const DateFormatter& dates) {
  const double seconds = std::max(0.0, item.modified - item.created);
  char tail[96];
  std::snprintf(tail, sizeof tail, "  %" PRIu64 " bytes, period %.1f min\n", item.size,
                seconds / 60.0);
  std::string line;
  line.reserve(label.size() + item.name.size() + 64 + sizeof tail);
  line.append(label).append("/").append(item.name).append("\t");
  line.append(dates.format(item.created)).append("  ").append(dates.format(item.modified));
  line.append(tail);
  return line;
}

LogStoreCatalogue::LogStoreCatalogue(std::string_view timeZone)
    : dates_(kCatalogueDatePattern, timeZone) {}

void LogStoreCatalogue::catalogueFolder(const Expected<std::vector<FolderItem>>& listing,
                                        std::string_view label, ArchiveOutput& output) {
  if (!listing) {
    output.appendOutputText(listing.error().message());
    return;
  }
  for (const FolderItem& item : *listing) {
    if (extensionOf(item.name) != kTraceExtension) continue;
    if (item.metadataError) {
      output.appendOutputText(item.metadataError->message());
      continue;
    }
    if (!item.isRegularFile) continue;
    theFileArray_.push_back(catalogueLine(label, item, dates_));
  }
}

std::string LogStoreCatalogue::sortedListing() {
  std::sort(theFileArray_.begin(), theFileArray_.end());
  size_t size = 0;
  for (const std::string& line : theFileArray_)
    size += line.size();
  std::string text;
  text.reserve(size);
  for (const std::string& line : theFileArray_)
    text += line;
  return text;
}

std::span<const std::string_view> catalogueFolderLabels() {
  static constexpr std::string_view labels[] = {"", "Persist", "Special", "Signpost"};
  return labels;
}

void runCatalogue(const std::filesystem::path& archive, ArchiveOutput& output,
                  std::stop_token stop) {
  output.replaceOutputText(std::string(kCatalogueHeading) + shownPath(archive) +
                           std::string(kHeadingEnd));
  LogStoreCatalogue catalogue;
  for (std::string_view label : catalogueFolderLabels()) {
    if (stop.stop_requested()) return;
    catalogue.catalogueFolder(listFolder(label.empty() ? archive : archive / label), label, output);
  }
  output.appendOutputText(catalogue.sortedListing());
}

}  // namespace kavor
