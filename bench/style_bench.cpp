// Styling decoded entries as the main window does: with the entry limit on, the walk stops after
// the limit however many entries were fetched; with it off, every entry is styled. The filtered
// runs search every message: an ASCII text (ICU only for the messages that are not ASCII), an
// accented one (ICU for every message), and a regular expression.

#include <benchmark/benchmark.h>

#include <algorithm>

#include "bench/decoded_log.h"
#include "bench/floor_report.h"
#include "engine/query/entry_styler.h"

namespace kavor::bench {
namespace {

// The factory "regular" style: six fields, cuts and colours.
constexpr std::string_view kRegularStyle = "0hr 2g 6b 9b 4r 10";

void styleBenchmark(benchmark::State& state, bool limitEntries,
                    FilterChoice filter = FilterChoice::none()) {
  const EntryList& list = decodedSyntheticLog(static_cast<size_t>(state.range(0)));
  StylerInput input;
  input.entries = &list;
  input.styleText = kRegularStyle;
  input.filter = std::move(filter);
  input.limitEntries = limitEntries;
  input.osVersion = 17;
  input.locale = "en_US";
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

void StyleFilteredAscii(benchmark::State& state) {
  styleBenchmark(state, false, FilterChoice::typed("Failed"));
}

void StyleFilteredAccented(benchmark::State& state) {
  styleBenchmark(state, false, FilterChoice::typed("CAFÉ"));
}

void StyleFilteredRegex(benchmark::State& state) {
  styleBenchmark(state, false, FilterChoice::row("*fails", "fail(ed|ure)"));
}

BENCHMARK(StyleCapped)->Arg(1000)->Arg(1000000)->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(StyleAll)->Arg(100000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(StyleFilteredAscii)->Arg(100000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(StyleFilteredAccented)->Arg(100000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(StyleFilteredRegex)->Arg(100000)->UseRealTime()->Unit(benchmark::kMillisecond);

const bool registered = [] {
  compareWithFloor("StyleCapped/1000000", "StyleCapped/1000");
  compareWithFloor("StyleCapped", "ReadPipeToMemory/1000000");
  compareWithFloor("StyleAll", "ReadPipeToMemory");
  for (const char* filtered : {"StyleFilteredAscii", "StyleFilteredAccented", "StyleFilteredRegex"})
    compareWithFloor(filtered, "ReadPipeToMemory");
  return true;
}();

}  // namespace
}  // namespace kavor::bench
