// The main window end to end, offscreen: Get Log of about 100 000 and 1 000 000 entries from the
// stand-in log tool, with the entry limit off, until the view has painted the result; against
// floors measured in the same run on the same bytes (the tool's output read into memory, and
// the engine's decode and styling of it); and the resident memory of each fetch against the size
// of its JSON, then after a later small fetch in the same window against a fresh process that
// made only that small fetch. Each case runs in a fresh child process of this program, so that
// each peak is the case's own.
//
// Usage: kavor_window_bench. (The cases: --case window ROOT MINUTES...,
// --case floor TOOL STYLE SHOW OS ARG...)

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench/window/case_report.h"
#include "bench/window/floor_case.h"
#include "bench/window/window_case.h"
#include "platform/child_process.h"
#include "platform/demo_root.h"
#include "tests/platform/temp_folder.h"

namespace kavor::bench {

namespace {

// The stand-in's live log holds about 1 420 entries a minute with Info and signposts, as the
// window fetches by default; the table gives the counts as fetched.
struct FetchSize {
  const char* name;
  int minutes;
};
constexpr FetchSize kSizes[] = {{"100000", 71}, {"1000000", 705}};
constexpr FetchSize kSmall = {"45000", 32};

constexpr double kMegabyte = 1e6;

// Runs a case of this program in a child process; exits when it fails, since every figure after
// would be meaningless.
CaseReport runCase(const std::vector<std::string>& args) {
  StringSink output;
  const auto ran = runChildProcess(runningProgram(), args, output);
  if (!ran || ran->status != 0 || ran->signalled) {
    std::fprintf(stderr, "case %s failed: %s\n", args.at(1).c_str(),
                 ran ? ran->standardError.c_str() : ran.error().message().c_str());
    std::exit(1);
  }
  return CaseReport(output.take());
}

CaseReport runWindow(const std::filesystem::path& root, std::vector<int> minutes) {
  std::vector<std::string> args{"--case", "window", root.string()};
  for (int m : minutes)
    args.push_back(std::to_string(m));
  return runCase(args);
}

CaseReport runFloor(const std::filesystem::path& root, const CaseReport& window) {
  std::vector<std::string> args{"--case",
                                "floor",
                                (root / "usr/bin/log").string(),
                                window.all("style").at(0),
                                window.all("show").at(0),
                                window.all("os").at(0)};
  for (const std::string& arg : window.all("arg"))
    args.push_back(arg);
  return runCase(args);
}

struct Measured {
  std::string name;
  CaseReport window;
  CaseReport floor;
};

void printRatio(const std::string& name, const char* what, double ratio) {
  std::printf("  %-16s %-44s %6.2f\n", name.c_str(), what, ratio);
}

void printReport(const std::vector<Measured>& measured, const CaseReport& fresh) {
  std::printf("%-9s %9s %9s %8s %8s %8s %8s %8s %9s %9s %9s %9s\n", "fetch", "entries", "JSON MB",
              "shown s", "read s", "file s", "decode s", "style s", "before MB", "peak MB",
              "after MB", "later MB");
  for (const Measured& m : measured) {
    const CaseReport& w = m.window;
    const CaseReport& f = m.floor;
    std::printf("%-9s %9.0f %9.1f %8.2f %8.2f %8.2f %8.2f %8.2f %9.1f %9.1f %9.1f %9.1f\n",
                m.name.c_str(), w.number("fetch0.entries"), f.number("json.bytes") / kMegabyte,
                w.number("fetch0.seconds"), f.number("read.seconds"), f.number("read.file.seconds"),
                f.number("decode.seconds"), f.number("style.seconds"),
                w.number("baseline.resident") / kMegabyte, w.number("fetch0.peak") / kMegabyte,
                w.number("fetch0.resident") / kMegabyte, w.number("fetch1.resident") / kMegabyte);
    if (w.number("fetch0.entries") != f.number("entries") ||
        w.number("fetch0.lines") != f.number("lines"))
      std::printf(
          "  (the window shows %.0f lines of %.0f entries, the floor styled %.0f of %.0f)\n",
          w.number("fetch0.lines"), w.number("fetch0.entries"), f.number("lines"),
          f.number("entries"));
  }
  std::printf("A fresh window's %.0f-entry fetch alone: %.1f MB resident after it.\n",
              fresh.number("fetch0.entries"), fresh.number("fetch0.resident") / kMegabyte);

  std::printf("\nAgainst the floor measured in this run:\n");
  for (const Measured& m : measured) {
    const CaseReport& w = m.window;
    const CaseReport& f = m.floor;
    const std::string name = "Window/" + m.name;
    const double shown = w.number("fetch0.seconds");
    const double json = f.number("json.bytes");
    printRatio(name, "shown / tool output read into memory", shown / f.number("read.seconds"));
    printRatio(name, "shown / same bytes read from a file", shown / f.number("read.file.seconds"));
    printRatio(name, "shown / engine decode and style",
               shown / (f.number("decode.seconds") + f.number("style.seconds")));
    printRatio(name, "peak resident / JSON", w.number("fetch0.peak") / json);
    printRatio(name, "resident after / JSON", w.number("fetch0.resident") / json);
    printRatio(name, "engine's entries / JSON", f.number("entries.bytes") / json);
    printRatio(name, ("resident after a later " + std::string(kSmall.name) + " / fresh").c_str(),
               w.number("fetch1.resident") / fresh.number("fetch0.resident"));
  }
  std::fflush(stdout);
}

int runBench() {
  const testing_support::TempFolder folder;
  const std::filesystem::path root = folder / "system";
  StringSink said;
  const auto made = runChildProcess(
      KAVOR_LOG_TOOL, std::vector<std::string>{"make-system", root.string(), "--macos", "10.15.7"},
      said);
  if (!made || made->status != 0) {
    std::fprintf(stderr, "make-system failed\n");
    return 1;
  }
  const CaseReport fresh = runWindow(root, {kSmall.minutes});
  std::vector<Measured> measured;
  for (const FetchSize& size : kSizes) {
    CaseReport window = runWindow(root, {size.minutes, kSmall.minutes});
    CaseReport floor = runFloor(root, window);
    measured.push_back({size.name, std::move(window), std::move(floor)});
  }
  printReport(measured, fresh);
  return 0;
}

}  // namespace

}  // namespace kavor::bench

int main(int argc, char** argv) {
  using namespace kavor::bench;
  const std::vector<std::string> args(argv + 1, argv + argc);
  if (args.size() >= 3 && args[0] == "--case" && args[1] == "window") {
    std::vector<int> minutes;
    for (size_t i = 3; i < args.size(); ++i)
      minutes.push_back(std::atoi(args[i].c_str()));
    return runWindowCase(argc, argv, args[2], minutes);
  }
  if (args.size() >= 6 && args[0] == "--case" && args[1] == "floor") {
    FloorChoices choices{
        args[2], {args.begin() + 6, args.end()}, args[3], args[4], std::atoi(args[5].c_str())};
    return runFloorCase(choices);
  }
  if (!args.empty()) {
    std::fprintf(stderr, "usage: kavor_window_bench\n");
    return 64;
  }
  return runBench();
}
