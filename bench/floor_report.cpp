#include "bench/floor_report.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <utility>
#include <vector>

namespace kavor::bench {

namespace {

std::vector<std::pair<std::string, std::string>>& comparisons() {
  static std::vector<std::pair<std::string, std::string>> c;
  return c;
}

// "DecodePipe/1000000/real_time" gives ("DecodePipe", "1000000").
std::pair<std::string, std::string> splitName(const std::string& name) {
  const size_t slash = name.find('/');
  if (slash == std::string::npos) return {name, ""};
  const size_t next = name.find('/', slash + 1);
  return {name.substr(0, slash),
          name.substr(slash + 1, next == std::string::npos ? std::string::npos : next - slash - 1)};
}

class FloorReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.error_occurred || run.iterations == 0) continue;
      // Times come in each benchmark's own unit; ratios need one.
      seconds_[run.benchmark_name()] =
          run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
    }
  }

  void Finalize() override {
    ConsoleReporter::Finalize();
    bool header = false;
    for (const auto& [name, time] : seconds_) {
      const auto [family, arg] = splitName(name);
      for (const auto& [measured, floor] : comparisons()) {
        const auto [mf, ma] = splitName(measured);
        if (family != mf || (!ma.empty() && arg != ma)) continue;
        const auto [ff, fa] = splitName(floor);
        for (const auto& [floorName, floorTime] : seconds_) {
          const auto [nf, na] = splitName(floorName);
          if (nf != ff || na != (fa.empty() ? arg : fa) || floorTime <= 0) continue;
          if (!header) {
            std::printf("\nAgainst the floor measured in this run (time / floor time):\n");
            header = true;
          }
          std::printf("  %-40s %-32s %8.3g\n", name.c_str(), floorName.c_str(), time / floorTime);
        }
      }
    }
    std::fflush(stdout);
  }

 private:
  std::map<std::string, double> seconds_;
};

}  // namespace

void compareWithFloor(const std::string& measured, const std::string& floor) {
  comparisons().emplace_back(measured, floor);
}

int runBenchmarks(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  FloorReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}

}  // namespace kavor::bench
