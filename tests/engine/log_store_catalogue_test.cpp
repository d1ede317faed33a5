#include "engine/archive/log_store_catalogue.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "tests/platform/temp_folder.h"

namespace kavor {
namespace {

using testing_support::TempFolder;
using testing_support::writeFile;

constexpr double k2020_11_10_081502 = 626688902.0;  // 2020-11-10 08:15:02 UTC, absolute time

FolderItem traceFile(std::string name, double created, double modified, uint64_t size = 1) {
  FolderItem item;
  item.name = std::move(name);
  item.isRegularFile = true;
  item.size = size;
  item.created = created;
  item.modified = modified;
  return item;
}

TEST(CatalogueLine, LaysOutNameDatesSizeAndPeriod) {
  const DateFormatter utc("yyyy-MM-dd HH:mm:ss ZZZ", "UTC");
  const double created = k2020_11_10_081502;
  EXPECT_EQ(catalogueLine("Persist",
                          traceFile("0000000000000123.tracev3", created,
                                    created + 6 * 3600 + 26 * 60 + 53, 10485760),
                          utc),
            "Persist/0000000000000123.tracev3\t2020-11-10 08:15:02 +0000  "
            "2020-11-10 14:41:55 +0000  10485760 bytes, period 386.9 min\n");
  const auto period = [&](double seconds) {
    const std::string line =
        catalogueLine("", traceFile("a.tracev3", created, created + seconds), utc);
    return line.substr(line.find("period "));
  };
  EXPECT_EQ(period(0), "period 0.0 min\n");
  EXPECT_EQ(period(90), "period 1.5 min\n");
  EXPECT_EQ(period(3), "period 0.1 min\n");
  // A copy keeps its modification date but is born later: never a negative period.
  EXPECT_EQ(period(-3600), "period 0.0 min\n");
  const DateFormatter pacific("yyyy-MM-dd HH:mm:ss ZZZ", "America/Los_Angeles");
  EXPECT_EQ(catalogueLine("", traceFile("logdata.LiveData.tracev3", created, created), pacific)
                .substr(0, 51),
            "/logdata.LiveData.tracev3\t2020-11-10 00:15:02 -0800");
}

TEST(LogStoreCatalogue, KeepsRegularTraceFilesAndSortsByFolderThenName) {
  LogStoreCatalogue catalogue("UTC");
  TextOutput output;
  FolderItem folder = traceFile("looks.tracev3", 0, 0);
  folder.isRegularFile = false;
  folder.isDirectory = true;
  FolderItem unreadable = traceFile("gone.tracev3", 0, 0);
  unreadable.metadataError = ioError("Cannot read the metadata of gone.tracev3", ENOENT);
  catalogue.catalogueFolder(
      std::vector<FolderItem>{traceFile("Z.tracev3", 0, 0), traceFile("b.TRACEV3", 0, 0),
                              traceFile("b.tracev3.txt", 0, 0), folder},
      "", output);
  catalogue.catalogueFolder(
      std::vector<FolderItem>{traceFile("000000000000000a.tracev3", 0, 0),
                              traceFile("0000000000000002.tracev3", 0, 0), unreadable},
      "Persist", output);
  catalogue.catalogueFolder(std::vector<FolderItem>{traceFile("s.tracev3", 0, 0)}, "Special",
                            output);
  catalogue.catalogueFolder(Error{ErrorKind::notFound, "no Signpost"}, "Signpost", output);
  EXPECT_EQ(output.text(),
            "Cannot read the metadata of gone.tracev3: No such file or directoryno Signpost");

  std::string names;
  const std::string listing = catalogue.sortedListing();
  for (size_t at = 0; at < listing.size(); at = listing.find('\n', at) + 1)
    names += listing.substr(at, listing.find('\t', at) - at) + " ";
  EXPECT_EQ(names,
            "/Z.tracev3 Persist/0000000000000002.tracev3 Persist/000000000000000a.tracev3 "
            "Special/s.tracev3 ");
}

TEST(LogStoreCatalogue, RunsOverAnArchiveFolderWithErrorsBeforeTheListing) {
  TempFolder archive;
  writeFile(archive / "logdata.LiveData.tracev3", "live");
  writeFile(archive / "Persist/0000000000000001.tracev3", std::string(1000, 'p'));
  writeFile(archive / "Special/0000000000000002.tracev3", "s");
  writeFile(archive / "Persist/notes.txt", "not a log file");
  TextOutput output;
  runCatalogue(archive.path(), output);

  const std::string heading = "Catalogue listing of " + archive.path().string() + " :\n";
  ASSERT_EQ(output.text().substr(0, heading.size()), heading);
  const std::string rest = output.text().substr(heading.size());
  // The missing Signpost folder: the system's words, then straight on with the listing.
  const std::string missing = (archive / "Signpost").string();
  const size_t listing = rest.find("No such file or directory/logdata.LiveData.tracev3\t");
  ASSERT_NE(listing, std::string::npos) << rest;
  EXPECT_NE(rest.substr(0, listing).find(missing), std::string::npos) << rest;
  std::vector<std::string> lines;
  std::istringstream in(rest.substr(listing + 25));
  for (std::string line; std::getline(in, line);)
    lines.push_back(line);
  ASSERT_EQ(lines.size(), 3u) << rest;
  // Dates of the zone of the moment: "yyyy-MM-dd HH:mm:ss ZZZ" (25 characters), twice.
  const auto dated = [](const std::string& line, std::string_view start, std::string_view end) {
    const size_t tab = line.find('\t');
    return line.starts_with(start) && tab == start.size() - 1 && line.size() > tab + 54 &&
           line[tab + 20] == ' ' && line.substr(tab + 26, 2) == "  " &&
           line.substr(tab + 53, 2) == "  " && line.find(end) == tab + 55;
  };
  EXPECT_TRUE(dated(lines[0], "/logdata.LiveData.tracev3\t", "4 bytes, period 0.0 min"))
      << lines[0];
  EXPECT_TRUE(dated(lines[1], "Persist/0000000000000001.tracev3\t", "1000 bytes, period "))
      << lines[1];
  EXPECT_TRUE(dated(lines[2], "Special/0000000000000002.tracev3\t", "1 bytes, period "))
      << lines[2];

  TempFolder empty;
  runCatalogue(empty.path(), output);
  EXPECT_EQ(output.text().find("Catalogue listing of " + empty.path().string() + " :\n"), 0u);
  EXPECT_EQ(output.text().find("tracev3"), std::string::npos);
}

}  // namespace
}  // namespace kavor
