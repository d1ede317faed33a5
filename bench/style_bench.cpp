// Styling decoded entries as the main window does: with the entry limit on, the walk stops after
// the limit however many entries were fetched; with it off, every entry is styled.

#include <benchmark/benchmark.h>

#include <algorithm>

#include "bench/decoded_log.h"
#include "bench/floor_report.h"
#include "engine/query/entry_styler.h"

namespace kavor::bench {
namespace {

// The factory "regular" style: six fields, cuts and colours.
constexpr std::string_view kRegularStyle = "0hr 2g 6b 9b 4r 10";

void styleBenchmark(benchmark::State& state, bool limitEntries) {
  const EntryList& list = decodedSyntheticLog(static_cast<size_t>(state.range(0)));
  StylerInput input;
  input.entries = &list;
  input.styleText = kRegularStyle;
  input.limitEntries = limitEntries;
  input.osVersion = 17;
  StyledEntries styled;
  for (auto _ : state) {
    styled = styleEntries(input);
    benchmark::DoNotOptimize(styled.text.text.data());
  }
  const std::string& text = styled.text.text;
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
  state.counters["lines"] = static_cast<double>(std::count(text.begin(), text.end(), '\n'));
}

void StyleCapped(benchmark::State& state) {
  styleBenchmark(state, true);
}

void StyleAll(benchmark::State& state) {
  styleBenchmark(state, false);
}

BENCHMARK(StyleCapped)->Arg(1000)->Arg(1000000)->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(StyleAll)->Arg(100000)->UseRealTime()->Unit(benchmark::kMillisecond);

const bool registered = [] {
  compareWithFloor("StyleCapped/1000000", "StyleCapped/1000");
  compareWithFloor("StyleCapped", "ReadPipeToMemory/1000000");
  compareWithFloor("StyleAll", "ReadPipeToMemory");
  return true;
}();

}  // namespace
}  // namespace kavor::bench
