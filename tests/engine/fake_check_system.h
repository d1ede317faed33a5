#pragma once
// A machine made up for the start-up checks and the Log Check report. As made, it passes every
// check: an administrator, a log store with files, a log tool that prints entries; tests spoil
// what they are about. It records which tools were run, and with what.

#include <cerrno>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "engine/shell/check_system.h"

namespace kavor::testing_support {

inline constexpr double kCheckNow = 700000000.0;  // 2023-03-08 20:26:40 UTC

inline FolderItem fileCreated(std::string name, double created) {
  FolderItem item;
  item.name = std::move(name);
  item.isRegularFile = true;
  item.created = created;
  item.modified = created;
  return item;
}

inline std::vector<FolderItem> filesNamed(std::initializer_list<const char*> names) {
  std::vector<FolderItem> items;
  for (const char* name : names)
    items.push_back(fileCreated(name, kCheckNow));
  return items;
}

class FakeCheckSystem final : public CheckSystem {
 public:
  struct Folder {
    bool isFolder = true;
    Expected<std::vector<FolderItem>> listing = std::vector<FolderItem>{};
  };

  FakeCheckSystem() {
    folders["/var/db/diagnostics"].listing = filesNamed({"Persist", "timesync", "version.plist"});
    folders["/var/db/diagnostics/Persist"].listing = filesNamed({"1.tracev3", "2.tracev3"});
    folders["/var/db/diagnostics/Special"].listing = filesNamed({"1.tracev3"});
    folders["/var/db/diagnostics/Signpost"].listing = std::vector<FolderItem>{};
    folders["/var/db/diagnostics/timesync"].listing = filesNamed({"1.timesync"});
    folders["/var/db/uuidtext"].listing = filesNamed({"00", "01", "02"});
    logShows("show --last 2", ToolOutput{0, "Timestamp    Thread\n2020-11-16 entry\n"});
    logShows("show --style json --last 2",
             ToolOutput{0, "[{\"timestamp\" : \"2020-11-16 10:00:00.123456+0000\"}]\n"});
  }

  // What the log tool gives for these arguments, joined by spaces.
  void logShows(const std::string& args, Expected<ToolOutput> run) {
    logTool.insert_or_assign(args, std::move(run));
  }
  // A folder the system has no trace of.
  void removeFolder(const std::string& path) {
    folders[path] = {false, Error{ErrorKind::io, "listing " + path, ENOENT}};
  }

  std::string login = "ada";
  std::vector<std::string> adminGroups = {"80"};
  Expected<ToolOutput> groupTool = ToolOutput{0, "20 12 61 79 80 81 98 701\n"};
  std::map<std::string, Expected<ToolOutput>> logTool;  // by the arguments, joined by spaces
  std::map<std::string, Folder> folders;                // by fixed path
  std::optional<std::string> clockSample = "2021-04-07 18:22:06";
  std::vector<std::string> runs;  // "id ada", "log show --last 2"

  std::string loginName() override { return login; }
  std::vector<std::string> administratorGroups() override { return adminGroups; }
  Expected<ToolOutput> runGroupTool(const std::string& name) override {
    runs.push_back("id " + name);
    return groupTool;
  }
  Expected<ToolOutput> runLogTool(std::span<const std::string_view> args) override {
    std::string joined;
    for (const std::string_view a : args)
      joined += (joined.empty() ? "" : " ") + std::string(a);
    runs.push_back("log " + joined);
    const auto found = logTool.find(joined);
    if (found != logTool.end()) return found->second;
    return Error{ErrorKind::io, "starting the log tool", ENOENT};
  }
  bool isFolder(std::string_view path) override { return folder(path).isFolder; }
  Expected<std::vector<std::string>> listFolderNames(std::string_view path) override {
    const Folder& f = folder(path);
    if (!f.listing) return f.listing.error();
    std::vector<std::string> names;
    for (const FolderItem& item : *f.listing)
      names.push_back(item.name);
    return names;
  }
  Expected<std::vector<FolderItem>> listFolder(std::string_view path) override {
    return folder(path).listing;
  }
  std::optional<std::string> formattedClockSample() override { return clockSample; }
  double now() override { return kCheckNow; }

 private:
  const Folder& folder(std::string_view path) {
    const auto found = folders.find(std::string(path));
    if (found == folders.end()) removeFolder(std::string(path));
    return folders.at(std::string(path));
  }
};

}  // namespace kavor::testing_support
