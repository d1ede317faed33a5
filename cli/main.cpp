// kavor-cli: the engine of Kavor from the command line, for terminals, scripts and tests.

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "cli/command.h"
#include "engine/version.h"

using namespace kavor::cli;

int main(int argc, char** argv) {
  const std::vector<std::string_view> args(argv + std::min(argc, 1), argv + argc);
  if (args.empty()) {
    // Bad usage: the help goes where the error would, leaving standard output empty.
    const std::string usage = overallUsage();
    std::fwrite(usage.data(), 1, usage.size(), stderr);
    return kExitUsage;
  }
  const std::string_view first = args.front();
  if (first == "-h" || first == "--help") {
    writeOut(overallUsage());
    return finishOutput(kExitOk);
  }
  if (first == "--version") {
    writeOut("kavor-cli " + std::string(kavor::kKavorVersion) + "\n");
    return finishOutput(kExitOk);
  }
  size_t taken = 0;
  const Command* command = findCommand(args, taken);
  if (!command) {
    // The first word of a group of commands ("archive") names its members.
    std::string members;
    for (const Command* known : commands())
      if (known->name.starts_with(std::string(first) + " "))
        members +=
            (members.empty() ? "" : ", ") + std::string(known->name.substr(first.size() + 1));
    if (!members.empty())
      return badUsage("\"" + std::string(first) + "\" takes one of: " + members +
                      " (see \"kavor-cli --help\")");
    const std::string what = first.starts_with('-') ? "option" : "command";
    return badUsage("unknown " + what + " \"" + std::string(first) +
                    "\" (see \"kavor-cli --help\")");
  }
  return runCommand(*command, std::span(args).subspan(taken));
}
