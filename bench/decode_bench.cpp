// Decoding the log tool's output from a pipe, against reading the same bytes from the same pipe
// into memory.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

#include "bench/decoded_log.h"
#include "bench/floor_report.h"
#include "bench/pipe_feed.h"
#include "bench/synthetic_log.h"
#include "engine/core/entry_decoder.h"

namespace kavor::bench {
namespace {

void ReadPipeToMemory(benchmark::State& state) {
  const std::string& data = syntheticOutput(static_cast<size_t>(state.range(0)));
  for (auto _ : state) {
    PipeFeed feed(data);
    std::unique_ptr<char[]> bytes(new char[data.size()]);
    size_t total = 0;
    ssize_t n;
    while (total < data.size() &&
           (n = ::read(feed.fd(), bytes.get() + total, data.size() - total)) > 0)
      total += static_cast<size_t>(n);
    benchmark::DoNotOptimize(bytes.get());
    if (!feed.finish() || total != data.size()) state.SkipWithError("the pipe lost bytes");
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * data.size()));
}

// Decodes what the child writes; on failure, marks the benchmark and gives nothing.
std::optional<EntryList> decodeFrom(PipeFeed& feed, EntryDecoder& decoder,
                                    benchmark::State& state) {
  for (;;) {
    const std::span<char> room = decoder.prepare(size_t{1} << 20);
    const ssize_t n = ::read(feed.fd(), room.data(), room.size());
    if (n <= 0) break;
    decoder.commit(static_cast<size_t>(n));
  }
  Expected<EntryList> list = decoder.finish();
  feed.finish();
  if (!list) {
    state.SkipWithError(list.error().message().c_str());
    return std::nullopt;
  }
  return std::move(*list);
}

void DecodePipe(benchmark::State& state) {
  const std::string& data = syntheticOutput(static_cast<size_t>(state.range(0)));
  std::optional<EntryList> last;
  for (auto _ : state) {
    PipeFeed feed(data);
    EntryDecoder decoder;
    std::optional<EntryList> list = decodeFrom(feed, decoder, state);
    if (!list) break;
    state.PauseTiming();  // freeing the previous list is not part of decoding this one
    last = std::move(*list);
    state.ResumeTiming();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * data.size()));
  if (last) {
    state.counters["entries"] = static_cast<double>(last->size());
    state.counters["stored/json"] =
        static_cast<double>(last->memoryBytes()) / static_cast<double>(data.size());
  }
}

// Far more than any output held at once: made on the fly by the child (KAVOR_BENCH_HUGE=1).
void DecodeHugePipe(benchmark::State& state) {
  const size_t entries = static_cast<size_t>(state.range(0));
  size_t bytes = 0;
  for (auto _ : state) {
    size_t next = 0;
    PipeFeed feed([&next, entries](std::string& piece) {
      if (next == 0) piece += "[";
      const size_t n = std::min<size_t>(10000, entries - next);
      appendSyntheticEntries(piece, 1, next, n);
      next += n;
      if (next == entries) piece += "]\n";
      return next < entries;
    });
    EntryDecoder decoder;
    std::optional<EntryList> list = decodeFrom(feed, decoder, state);
    if (!list) break;
    bytes = decoder.bytesSeen();
    state.counters["entries"] = static_cast<double>(list->size());
    state.counters["json_GB"] = static_cast<double>(bytes) / 1e9;
    state.counters["stored/json"] =
        static_cast<double>(list->memoryBytes()) / static_cast<double>(bytes);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
}

BENCHMARK(ReadPipeToMemory)
    ->Arg(100000)
    ->Arg(1000000)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);
BENCHMARK(DecodePipe)
    ->Arg(100000)
    ->Arg(1000000)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);

const bool registered = [] {
  compareWithFloor("DecodePipe", "ReadPipeToMemory");
  if (const char* huge = std::getenv("KAVOR_BENCH_HUGE"); huge && *huge == '1') {
    benchmark::RegisterBenchmark("DecodeHugePipe", DecodeHugePipe)
        ->Arg(4200000)
        ->Iterations(1)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
  }
  return true;
}();

}  // namespace
}  // namespace kavor::bench
