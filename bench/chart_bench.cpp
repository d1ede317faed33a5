// The activity chart: the collection reads every entry once after a fetch; the binning runs again
// on every click in the chart window, so it must stay far below what a person notices.

#include <benchmark/benchmark.h>

#include "bench/decoded_log.h"
#include "bench/floor_report.h"
#include "engine/document/chart_data.h"
#include "platform/clock.h"

namespace kavor::bench {
namespace {

constexpr double kStart = kSyntheticStart;
constexpr double kEnd = kSyntheticEnd;

void CollectChart(benchmark::State& state) {
  const EntryList& list = decodedSyntheticLog(static_cast<size_t>(state.range(0)));
  ChartEntries entries;
  for (auto _ : state) {
    entries = collectChartEntries(list, kStart);
    benchmark::DoNotOptimize(entries.times.data());
  }
  state.counters["names"] = static_cast<double>(entries.distinctNames.size());
}

void BinChart(benchmark::State& state) {
  const EntryList& list = decodedSyntheticLog(static_cast<size_t>(state.range(0)));
  FixedClock clock(kStart);
  Document doc(clock);
  doc.endDate = kEnd;
  indexSubsystems(doc, collectChartEntries(list, kStart));
  // The most bins a click can ask for, for all entries or for one subsystem.
  doc.theNoBins = state.range(1);
  const int64_t selection = state.range(2);
  for (auto _ : state) {
    binChartData(doc, selection);
    benchmark::DoNotOptimize(doc.logBarValue.data());
  }
  state.counters["firstBin"] = static_cast<double>(doc.logBarValue.front());
}

BENCHMARK(CollectChart)->Arg(1000000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BinChart)
    ->Args({1000000, 50, 0})
    ->Args({1000000, 191, 0})
    ->Args({1000000, 191, 1})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

const bool registered = [] {
  compareWithFloor("CollectChart", "ReadPipeToMemory/1000000");
  compareWithFloor("BinChart", "ReadPipeToMemory/1000000");
  return true;
}();

}  // namespace
}  // namespace kavor::bench
