// log make-system ROOT [--macos VERSION]: a simulated system root around a copy of this program.

#include <optional>
#include <string>

#include "tools/log/show_command.h"
#include "tools/log/system_layout.h"
#include "tools/log/time_window.h"

namespace kavor::standin {

int runMakeSystem(std::span<const std::string_view> args, std::string_view self) {
  std::optional<std::string> root;
  SystemLayoutOptions options;
  for (size_t i = 0; i < args.size(); ++i) {
    if (args[i] == "--macos") {
      if (i + 1 >= args.size()) return complain(kExitUsage, "--macos needs a value");
      options.macosVersion = std::string(args[++i]);
    } else if (args[i].starts_with("-") || root) {
      return complain(kExitUsage, "unexpected argument " + std::string(args[i]));
    } else {
      root = std::string(args[i]);
    }
  }
  if (!root) return complain(kExitUsage, "make-system needs ROOT");
  options.logTool = std::string(self);
  options.nowMicros = nowMicros();
  if (const auto made = makeSystemLayout(*root, options); !made)
    return complain(kExitFailure, made.error().message());
  return kExitOk;
}

}  // namespace kavor::standin
