// The stand-in log tool's "show --style json" over an hour of live log with Info and Debug, as
// bytes of JSON made per second on one core: it must never be what limits Kavor's figures.

#include <benchmark/benchmark.h>

#include <string>

#include "tools/log/entry_printer.h"
#include "tools/log/live_log.h"

namespace kavor::bench {
namespace {

constexpr int64_t kHourMicros = int64_t{3600} * 1000000;
constexpr int64_t kStartMicros = int64_t{1605520800} * 1000000;

void LogToolShowJson(benchmark::State& state) {
  size_t bytes = 0;
  size_t entries = 0;
  for (auto _ : state) {
    standin::EntryPrinter printer(standin::PrintStyle::json);
    std::string out;
    bytes = 0;
    entries = 0;
    printer.begin(out);
    standin::forEachLiveEntry(kStartMicros, kStartMicros + kHourMicros,
                              [&](const standin::LogEntry& e) {
                                if (e.eventType == "signpostEvent") return;  // no --signpost
                                printer.add(out, e);
                                ++entries;
                                // As the tool writes its output a megabyte at a time.
                                if (out.size() >= (size_t{1} << 20)) {
                                  bytes += out.size();
                                  benchmark::DoNotOptimize(out.data());
                                  out.clear();
                                }
                              });
    printer.end(out);
    bytes += out.size();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
  state.counters["entries"] = static_cast<double>(entries);
}

BENCHMARK(LogToolShowJson)->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
}  // namespace kavor::bench
