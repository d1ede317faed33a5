#include "tools/log/show_command.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <optional>
#include <string>

#include "tools/log/container.h"
#include "tools/log/entry_printer.h"
#include "tools/log/live_log.h"
#include "tools/log/log_archive.h"
#include "tools/log/predicate.h"
#include "tools/log/time_window.h"

namespace kavor::standin {

namespace {

// Without --start, --end or --last the live log is shown for this long before now.
constexpr int64_t kDefaultLiveSpan = int64_t{3600} * 1000000;
constexpr size_t kOutputPiece = size_t{1} << 20;

struct ShowOptions {
  std::optional<std::string> archive;
  std::optional<std::string> file;
  std::optional<Predicate> predicate;
  PrintStyle style = PrintStyle::plain;
  bool info = false;
  bool debug = false;
  bool signposts = false;
  std::optional<int64_t> start;
  std::optional<int64_t> end;
  std::optional<int64_t> last;
};

bool writeAll(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t n = ::write(STDOUT_FILENO, bytes.data(), bytes.size());
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    bytes.remove_prefix(static_cast<size_t>(n));
  }
  return true;
}

// Fills options from args; an error message when they are not usable.
std::optional<std::string> parseShow(std::span<const std::string_view> args, ShowOptions& o) {
  for (size_t i = 0; i < args.size(); ++i) {
    const std::string_view a = args[i];
    const bool takesValue = a == "--archive" || a == "--file" || a == "--predicate" ||
                            a == "--style" || a == "--start" || a == "--end" || a == "--last";
    if (a == "--info") {
      o.info = true;
    } else if (a == "--debug") {
      o.debug = true;
    } else if (a == "--signpost") {
      o.signposts = true;
    } else if (!takesValue) {
      return "unknown option " + std::string(a);
    } else if (i + 1 >= args.size()) {
      return std::string(a) + " needs a value";
    } else {
      const std::string_view v = args[++i];
      if (a == "--archive") {
        o.archive = std::string(v);
      } else if (a == "--file") {
        o.file = std::string(v);
      } else if (a == "--predicate") {
        auto p = Predicate::parse(v);
        if (!p) return p.error().message();
        o.predicate = std::move(*p);
      } else if (a == "--style") {
        if (v != "json" && v != "default") return "unknown style " + std::string(v);
        o.style = v == "json" ? PrintStyle::json : PrintStyle::plain;
      } else if (a == "--last") {
        o.last = parseSpan(v);
        if (!o.last) return "bad time span \"" + std::string(v) + "\"";
      } else {
        auto& slot = a == "--start" ? o.start : o.end;
        slot = parseLocalTime(v);
        if (!slot) return "bad time \"" + std::string(v) + "\" (use yyyy-MM-dd HH:mm:ss)";
      }
    }
  }
  if (o.archive && o.file) return "--archive and --file exclude each other";
  if (o.last && (o.start || o.end)) return "--last excludes --start and --end";
  return std::nullopt;
}

}  // namespace

int complain(int status, std::string_view message) {
  std::fprintf(stderr, "log: %.*s\n", static_cast<int>(message.size()), message.data());
  return status;
}

int runShow(std::span<const std::string_view> args) {
  ShowOptions o;
  if (const auto problem = parseShow(args, o)) return complain(kExitUsage, *problem);

  const int64_t now = nowMicros();
  int64_t from = INT64_MIN, to = INT64_MAX;
  if (o.last) {
    from = now - *o.last;
    to = now;
  } else {
    if (o.start) from = *o.start;
    if (o.end) to = *o.end + 1000000;  // the end second is included
  }

  EntryPrinter printer(o.style);
  std::string out;
  printer.begin(out);
  bool written = true;
  const auto show = [&](const LogEntry& e) {
    if (e.timeMicros < from || e.timeMicros >= to) return;
    if (!o.info && e.messageType == "Info") return;
    if (!o.debug && e.messageType == "Debug") return;
    if (!o.signposts && e.eventType == "signpostEvent") return;
    if (o.predicate && !o.predicate->matches(e)) return;
    printer.add(out, e);
    if (out.size() >= kOutputPiece) {
      written = written && writeAll(out);
      out.clear();
    }
  };

  if (o.archive || o.file) {
    auto entries = o.archive ? readLogArchive(*o.archive) : readContainer(*o.file);
    if (!entries) return complain(kExitFailure, entries.error().message());
    for (const LogEntry& e : *entries)
      show(e);
  } else {
    if (!o.last && !o.start) from = (o.end ? to : now) - kDefaultLiveSpan;
    if (!o.last && !o.end) to = now;
    forEachLiveEntry(from, to, show);
  }
  printer.end(out);
  written = written && writeAll(out);
  return written ? kExitOk : kExitFailure;
}

int runCollect(std::span<const std::string_view> args) {
  std::optional<std::string> output;
  int64_t span = int64_t{600} * 1000000;
  for (size_t i = 0; i < args.size(); ++i) {
    if (args[i] != "--output" && args[i] != "--last")
      return complain(kExitUsage, "unknown option " + std::string(args[i]));
    if (i + 1 >= args.size()) return complain(kExitUsage, std::string(args[i]) + " needs a value");
    const std::string_view v = args[++i];
    if (args[i - 1] == "--output") {
      output = std::string(v);
    } else if (const auto s = parseSpan(v)) {
      span = *s;
    } else {
      return complain(kExitUsage, "bad time span \"" + std::string(v) + "\"");
    }
  }
  if (!output) return complain(kExitUsage, "collect needs --output PATH");
  const int64_t now = nowMicros();
  const auto written = writeLogArchive(*output, liveEntries(now - span, now), now);
  if (!written) return complain(kExitFailure, written.error().message());
  return kExitOk;
}

}  // namespace kavor::standin
