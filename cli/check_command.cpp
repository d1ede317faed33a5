// kavor-cli check: the Log Check report, or with --startup the checks Kavor runs at start.

#include <string>

#include "cli/command.h"
#include "engine/shell/log_check_report.h"
#include "engine/shell/machine_check_system.h"
#include "engine/shell/startup_checks.h"
#include "platform/clock.h"
#include "platform/demo_root.h"
#include "platform/system_paths.h"

namespace kavor::cli {

namespace {

constexpr std::string_view kStartup = "--startup";
constexpr OptionSpec kOptions[] = {
    {kStartup, {}, "run the start-up checks and print the alert of each that fails"},
};

int runCheck(const Arguments& args) {
  const EnvLookup env = processEnvironment();
  // On first use the demo system is made, so that there is a system to check.
  if (const auto made = ensureDemoRoot(env, runningProgram()); !made)
    printError(made.error().message());
  const SystemClock clock;
  MachineCheckSystem system(SystemPaths(systemRootFrom(env)), clock);

  if (!args.has(kStartup)) {
    std::string report = logCheckReport(system);
    if (!report.ends_with('\n')) report += '\n';
    writeOut(report);
    return kExitOk;
  }
  bool first = true;
  const StartupOutcome outcome = runStartupChecks(system, [&first](const StartupAlert& alert) {
    writeOut(first ? "" : "\n");
    writeOut(std::string(alert.text) + "\n");
    first = false;
  });
  return outcome.failed > 0 ? kExitFailure : kExitOk;
}

}  // namespace

const Command& checkCommand() {
  static const Command command{
      .name = "check",
      .summary = "report on the health of the log store, or run the start-up checks",
      .synopsis = "[--startup]",
      .details =
          "Prints the Log Check report: the items in the log store's folders under\n"
          "/var/db/diagnostics and in /var/db/uuidtext, the age of the oldest log file, and\n"
          "what \"log show --last 2\" returned. With --startup it runs the five checks Kavor\n"
          "runs at start (an administrator, log files, timesync files, log entries, 24-hour\n"
          "time stamps) and prints the alert text of each that fails, a blank line between\n"
          "two; the status is then 1 when any failed. A user who is no administrator ends\n"
          "the checks there, as Kavor quits. Paths are read under the system root\n"
          "(KAVOR_SYSTEM_ROOT when it is set; the demo system is made on first use); the\n"
          "group tool is the system's own /usr/bin/id.",
      .options = kOptions,
      .maxOperands = 0,
      .run = runCheck,
  };
  return command;
}

}  // namespace kavor::cli
