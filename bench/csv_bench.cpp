// Converting decoded entries to CSV as the main window does, every event type shown so that each
// entry becomes a row; measured in CSV bytes made per second.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <optional>
#include <string>

#include "bench/decoded_log.h"
#include "bench/floor_report.h"
#include "engine/query/csv_conversion.h"

namespace kavor::bench {
namespace {

void Csv(benchmark::State& state) {
  const EntryList& list = decodedSyntheticLog(static_cast<size_t>(state.range(0)));
  const ShowSwitches everything{
      .showLogEntries = true, .showSignposts = true, .showActivities = true};
  std::optional<std::string> text;
  for (auto _ : state) {
    state.PauseTiming();  // freeing the previous text is not part of making this one
    text.reset();
    state.ResumeTiming();
    text = convertToCsv(list, 17, everything);
    benchmark::DoNotOptimize(text->data());
  }
  if (!text) return;
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text->size()));
  state.counters["rows"] = static_cast<double>(std::count(text->begin(), text->end(), '\n') - 1);
}

BENCHMARK(Csv)->Arg(1000000)->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(3);

const bool registered = [] {
  compareWithFloor("Csv", "ReadPipeToMemory");
  return true;
}();

}  // namespace
}  // namespace kavor::bench
