// kavor-log: the stand-in for the system's log tool, with its "show" and "collect" commands, and
// "make-system", which lays out a simulated system root around a copy of this program.

#include <string>
#include <string_view>
#include <vector>

#include "tools/log/show_command.h"

namespace {

constexpr std::string_view kUsage =
    "usage:\n"
    "    log show [--archive PATH | --file PATH] [--predicate TEXT] [--style json|default]\n"
    "             [--info] [--debug] [--signpost]\n"
    "             [--start TIME] [--end TIME] [--last N[s|m|h|d]]\n"
    "    log collect --output PATH [--last N[s|m|h|d]]\n"
    "    log make-system ROOT [--macos VERSION]\n"
    "TIME is \"yyyy-MM-dd HH:mm:ss\" or \"yyyy-MM-dd\" in the local time zone.";

}  // namespace

int main(int argc, char** argv) {
  using namespace kavor::standin;
  const std::vector<std::string_view> args(argv + (argc > 0 ? 1 : 0), argv + argc);
  if (args.empty()) return complain(kExitUsage, kUsage);
  const std::string_view command = args.front();
  const std::span<const std::string_view> rest(args.begin() + 1, args.end());
  if (command == "show") return runShow(rest);
  if (command == "collect") return runCollect(rest);
  if (command == "make-system") return runMakeSystem(rest, "/proc/self/exe");
  if (command == "help" || command == "--help") return complain(kExitOk, kUsage);
  return complain(kExitUsage,
                  "unknown command \"" + std::string(command) + "\"\n" + std::string(kUsage));
}
