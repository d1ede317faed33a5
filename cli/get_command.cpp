// kavor-cli get: a Get Log from the command line, run as the main window runs it.

#include <memory>
#include <string>
#include <vector>

#include "cli/command.h"
#include "cli/query_options.h"
#include "cli/style_options.h"
#include "engine/query/log_fetch.h"
#include "platform/clock.h"
#include "platform/main_thread.h"
#include "platform/system_paths.h"
#include "platform/termination_signals.h"

namespace kavor::cli {

namespace {

// The tool's fixed path, found under the system root.
constexpr std::string_view kLogTool = "/usr/bin/log";
// Ended by a signal, the command exits as shells report it: 128 plus the signal's number.
constexpr int kExitSignalBase = 128;

std::span<const OptionSpec> options() {
  static const std::vector<OptionSpec> all = joinOptions({queryOptions(), styleOptions()});
  return all;
}

int runGet(const Arguments& args) {
  int status = kExitOk;
  const auto style = styleChoiceFrom(args, status);
  if (!style) return status;
  const DateFormatter formatter(kQueryDatePattern);
  const auto input = queryInputFrom(args, formatter, status);
  if (!input) return status;
  std::string styleText;
  const auto styler = stylerInputFor(*style, input->osVersion, styleText, status);
  if (!styler) return status;

  // The loop is made before the document so that it outlives the workers of the document's
  // queue, which post to it.
  SimpleMainLoop mainThread;
  const SystemClock clock;
  Document document(clock);
  const LogQuery query = buildLogQuery(*input, formatter);
  document.startDate = query.startDate;
  document.endDate = query.endDate;
  const auto tool = SystemPaths(systemRootFrom(processEnvironment())).resolve(kLogTool);

  // As the window does: the tool runs on the document's queue, the completion on the main thread.
  LogFetch fetch(*document.processingQueue, mainThread);
  std::optional<LogShowCompletion> done;
  // Asked to end, the command ends its tool first.
  const TerminationSignals signals([&](int) { mainThread.post([&] { fetch.cancel(); }); });
  fetch.start(tool, query.theFullCmdStr, [&](LogShowOutput&& output) {
    done = completeLogShow(std::move(output), document, *styler,
                           {formatter, query.startDate, clock.now(), true});
  });
  mainThread.runUntil([&] { return done.has_value() || signals.received() != 0; });
  if (const int number = signals.received()) return kExitSignalBase + number;

  if (done->alertText) return failed(std::string(kActionErrorMessage) + " " + *done->alertText);
  if (!done->redraw)
    return failed("the log tool's output does not decode: " + done->decodeError->message());
  writeStyledEntries(*style, done->styled);
  return kExitOk;
}

}  // namespace

const Command& getCommand() {
  static const Command command{
      .name = "get",
      .summary = "fetch a time window of the log as Get Log does and print it styled",
      .synopsis = "[query options] [style options]",
      .details =
          "Builds the argument list as \"kavor-cli query\" does, runs the system's log tool\n"
          "(/usr/bin/log under the system root) with it, decodes its output and prints the\n"
          "entries styled as \"kavor-cli style\" does. When the tool fails, the window's\n"
          "alert text goes to standard error and the status is 1; output that does not\n"
          "decode gives the decoder's reason and 1. Interrupted (SIGINT, SIGTERM), it ends\n"
          "the tool and exits with 128 plus the signal's number.\n"
          "Without --os-version the version is read from the system root\n"
          "(KAVOR_SYSTEM_ROOT when it is set; the demo system is made on first use).",
      .options = options(),
      .maxOperands = 0,
      .run = runGet,
  };
  return command;
}

}  // namespace kavor::cli
