#include "engine/shell/machine_check_system.h"

#include <filesystem>
#include <utility>

#include "engine/core/date_format.h"
#include "engine/shell/check_texts.h"
#include "platform/child_process.h"
#include "platform/folders.h"
#include "platform/user_account.h"

namespace kavor {

namespace {

Expected<ToolOutput> runTool(const std::filesystem::path& program,
                             std::span<const std::string> args) {
  StringSink sink;
  const auto exit = runChildProcess(program, args, sink);
  if (!exit) return exit.error();
  return ToolOutput{exit->status, sink.take()};
}

}  // namespace

MachineCheckSystem::MachineCheckSystem(SystemPaths paths, const Clock& clock)
    : paths_(std::move(paths)), clock_(clock) {}

std::string MachineCheckSystem::loginName() {
  return kavor::loginName();
}

std::vector<std::string> MachineCheckSystem::administratorGroups() {
  std::vector<std::string> pieces = administratorGroupNumbers();
#ifndef __APPLE__
  // The tool's output ends with a line break that stays on its last piece. macOS lists group 80
  // among others; here the administrator group is often the last, for root the only one, so it
  // counts with the line break too.
  const size_t count = pieces.size();
  for (size_t i = 0; i < count; ++i)
    pieces.push_back(pieces[i] + "\n");
#endif
  return pieces;
}

Expected<ToolOutput> MachineCheckSystem::runGroupTool(const std::string& name) {
  const std::string args[] = {std::string(kGroupToolOption), name};
  return runTool(std::string(kGroupToolPath), args);
}

Expected<ToolOutput> MachineCheckSystem::runLogTool(std::span<const std::string_view> args) {
  const std::vector<std::string> list(args.begin(), args.end());
  return runTool(paths_.resolve(kLogToolPath), list);
}

bool MachineCheckSystem::isFolder(std::string_view fixedPath) {
  std::error_code ec;
  return std::filesystem::is_directory(paths_.resolve(fixedPath), ec);
}

Expected<std::vector<std::string>> MachineCheckSystem::listFolderNames(std::string_view fixedPath) {
  return kavor::listFolderNames(paths_.resolve(fixedPath));
}

Expected<std::vector<FolderItem>> MachineCheckSystem::listFolder(std::string_view fixedPath) {
  return kavor::listFolder(paths_.resolve(fixedPath));
}

std::optional<std::string> MachineCheckSystem::formattedClockSample() {
  const DateFormatter sample(kClockSamplePattern);
  const auto date = sample.parse(kClockSampleText);
  if (!date) return std::nullopt;
  return sample.format(*date);
}

double MachineCheckSystem::now() {
  return clock_.now();
}

}  // namespace kavor
