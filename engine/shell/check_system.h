#pragma once
// What the start-up checks and the Log Check report read of the machine, behind one interface:
// the machine itself (MachineCheckSystem), or a made-up one in tests. Paths are the system's
// fixed ones ("/var/db/diagnostics/Persist"); an implementation finds them where they live.

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/expected.h"
#include "platform/folders.h"

namespace kavor {

// A tool that ran: its exit status (or the number of the signal that ended it) and what it
// wrote to standard output, undecoded.
struct ToolOutput {
  int status = 0;
  std::string output;
};

class CheckSystem {
 public:
  virtual ~CheckSystem();

  // The login name of the user who runs Kavor; empty when the system knows none.
  virtual std::string loginName() = 0;
  // The pieces of the group tool's output that make a user an administrator.
  virtual std::vector<std::string> administratorGroups() = 0;
  // "/usr/bin/id -G name", or why it could not be started.
  virtual Expected<ToolOutput> runGroupTool(const std::string& name) = 0;
  // "/usr/bin/log" with args, or why it could not be started.
  virtual Expected<ToolOutput> runLogTool(std::span<const std::string_view> args) = 0;

  // Whether the path is an existing folder (a link to one counts).
  virtual bool isFolder(std::string_view fixedPath) = 0;
  // A folder's names, hidden ones included; the error carries the system's reason.
  virtual Expected<std::vector<std::string>> listFolderNames(std::string_view fixedPath) = 0;
  // The same with each item's metadata, its creation time among it.
  virtual Expected<std::vector<FolderItem>> listFolder(std::string_view fixedPath) = 0;

  // The sample date read and written again by a formatter under the user's clock setting; none
  // when the formatter could not read it.
  virtual std::optional<std::string> formattedClockSample() = 0;
  // The current absolute time.
  virtual double now() = 0;
};

}  // namespace kavor
