#pragma once
// The machine the checks run on: the user, the real group tool, and the log tool and log store
// under the system root. Each call reads afresh; nothing is kept between calls.

#include "engine/shell/check_system.h"
#include "platform/clock.h"
#include "platform/system_paths.h"

namespace kavor {

class MachineCheckSystem final : public CheckSystem {
 public:
  MachineCheckSystem(SystemPaths paths, const Clock& clock);

  std::string loginName() override;
  std::vector<std::string> administratorGroups() override;
  Expected<ToolOutput> runGroupTool(const std::string& name) override;
  Expected<ToolOutput> runLogTool(std::span<const std::string_view> args) override;
  bool isFolder(std::string_view fixedPath) override;
  Expected<std::vector<std::string>> listFolderNames(std::string_view fixedPath) override;
  Expected<std::vector<FolderItem>> listFolder(std::string_view fixedPath) override;
  std::optional<std::string> formattedClockSample() override;
  double now() override;

 private:
  SystemPaths paths_;
  const Clock& clock_;
};

}  // namespace kavor
