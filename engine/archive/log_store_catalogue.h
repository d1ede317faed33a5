#pragma once
// The catalogue of a logarchive's log data files: for each .tracev3 file of the archive's top
// level and of its Persist, Special and Signpost folders, one line with its folder and name, its
// creation and modification dates, its size and the minutes it spans, sorted by folder and name.
// It reads file-system metadata only, never the files.

#include <filesystem>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "engine/archive/archive_output.h"
#include "engine/core/date_format.h"
#include "platform/folders.h"

namespace kavor {

// "Persist/0000000000000123.tracev3\t2020-11-10 08:15:02 +0000  2020-11-10 14:41:55 +0000
// 10485760 bytes, period 386.9 min\n". A modification date before the creation date (a copied
// file on a file system that keeps birth times, or a store made where they cannot be set)
// shows the period 0.0.
std::string catalogueLine(std::string_view label, const FolderItem& item,
                          const DateFormatter& dates);

class LogStoreCatalogue {
 public:
  // timeZone: an ICU zone id; empty for the user's zone at the moment the catalogue is made.
  explicit LogStoreCatalogue(std::string_view timeZone = {});

  // Adds the lines of one folder's listing, or appends the listing's error, or the error of an
  // item whose metadata could not be read. Items that are not regular files, or whose extension
  // is not exactly "tracev3", are left out without a word.
  void catalogueFolder(const Expected<std::vector<FolderItem>>& listing, std::string_view label,
                       ArchiveOutput& output);
  // The lines gathered so far, sorted by their text, as one piece.
  std::string sortedListing();

  const std::vector<std::string>& theFileArray() const { return theFileArray_; }

 private:
  DateFormatter dates_;  // one formatter for every date of a run, in the zone of the moment
  std::vector<std::string> theFileArray_;
};

// The folders a catalogue examines, with their labels, in order: the archive itself (""), then
// Persist, Special and Signpost.
std::span<const std::string_view> catalogueFolderLabels();

// The whole run on a logarchive folder: the heading, the error texts where they occur, then the
// sorted listing. Ends early, leaving what it wrote, when stop is requested.
void runCatalogue(const std::filesystem::path& archive, ArchiveOutput& output,
                  std::stop_token stop = {});

}  // namespace kavor
