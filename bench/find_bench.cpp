// Find in the styled text of a whole log, as the find bar runs it, against the styler's own time
// for the same text in the same run: a word without case (the usual search), the same word with
// case, an accented word, and a regular expression matched line by line.

#include <benchmark/benchmark.h>

#include "bench/decoded_log.h"
#include "bench/floor_report.h"
#include "engine/document/text_search.h"
#include "engine/query/entry_styler.h"

namespace kavor::bench {
namespace {

// The factory "regular" style, as the styler benchmarks use it.
constexpr std::string_view kRegularStyle = "0hr 2g 6b 9b 4r 10";

StylerInput wholeLogInput(size_t entries) {
  StylerInput input;
  input.entries = &decodedSyntheticLog(entries);
  input.styleText = kRegularStyle;
  input.limitEntries = false;
  input.osVersion = 17;
  input.locale = "en_US";
  return input;
}

const std::string& styledText(size_t entries) {
  static const std::string text = styleEntries(wholeLogInput(entries)).text.text;
  return text;
}

void StyleWholeLog(benchmark::State& state) {
  const StylerInput input = wholeLogInput(static_cast<size_t>(state.range(0)));
  for (auto _ : state) {
    StyledEntries styled = styleEntries(input);
    benchmark::DoNotOptimize(styled.text.text.data());
  }
}

void findBenchmark(benchmark::State& state, TextQuery query) {
  const std::string& text = styledText(static_cast<size_t>(state.range(0)));
  query.locale = "en_US";
  size_t total = 0;
  for (auto _ : state) {
    auto found = findInText(text, query);
    if (!found) state.SkipWithError(found.error().context.c_str());
    total = found ? found->count.total : 0;
    benchmark::DoNotOptimize(total);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
  state.counters["matches"] = static_cast<double>(total);
  state.counters["MB"] = static_cast<double>(text.size()) / 1e6;
}

void FindWord(benchmark::State& state) {
  findBenchmark(state, {"failed", false, false, {}});
}

void FindWordMatchCase(benchmark::State& state) {
  findBenchmark(state, {"failed", true, false, {}});
}

void FindAccented(benchmark::State& state) {
  findBenchmark(state, {"CAF\xC3\x89", false, false, {}});
}

void FindRegex(benchmark::State& state) {
  findBenchmark(state, {"fail(ed|ure)", false, true, {}});
}

BENCHMARK(StyleWholeLog)->Arg(1000000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(FindWord)->Arg(1000000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(FindWordMatchCase)->Arg(1000000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(FindAccented)->Arg(1000000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(FindRegex)->Arg(1000000)->UseRealTime()->Unit(benchmark::kMillisecond);

const bool registered = [] {
  for (const char* find : {"FindWord", "FindWordMatchCase", "FindAccented", "FindRegex"})
    compareWithFloor(find, "StyleWholeLog");
  return true;
}();

}  // namespace
}  // namespace kavor::bench
