// A whole Get Log of a million entries: the tool's output read from a child process through a
// pipe and decoded as it arrives, against reading the same bytes through the same kind of pipe
// from the same kind of child into memory.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <string>

#include "bench/decoded_log.h"
#include "bench/floor_report.h"
#include "engine/document/chart_data.h"
#include "engine/query/log_fetch.h"
#include "platform/child_process.h"
#include "platform/clock.h"

namespace kavor::bench {
namespace {

// The output in a file that a child process (cat) writes into the pipe, as the tool would.
const std::string& outputFile(size_t entries) {
  static std::map<size_t, std::string> files;
  auto it = files.find(entries);
  if (it != files.end()) return it->second;
  const std::string path =
      (std::filesystem::temp_directory_path() /
       ("kavor-fetch-" + std::to_string(::getpid()) + "-" + std::to_string(entries) + ".json"))
          .string();
  const std::string& bytes = syntheticOutput(entries);
  FILE* f = std::fopen(path.c_str(), "wb");
  if (!f || std::fwrite(bytes.data(), 1, bytes.size(), f) != bytes.size()) std::abort();
  std::fclose(f);
  static const struct Cleanup {
    ~Cleanup() {
      for (const auto& [n, p] : files)
        std::filesystem::remove(p);
    }
  } cleanup;
  return files.emplace(entries, path).first->second;
}

// The floor's memory is sized for the output beforehand, as the decoding floor's is: only the
// reading is measured, not growing a buffer.
class SizedSink final : public OutputSink {
 public:
  explicit SizedSink(size_t size) : bytes_(new char[size + 1]), size_(size + 1) {}
  std::span<char> room() override { return {bytes_.get() + used_, size_ - used_}; }
  void commit(size_t n) override { used_ += n; }
  size_t used() const { return used_; }

 private:
  std::unique_ptr<char[]> bytes_;
  size_t size_;
  size_t used_ = 0;
};

void ReadChildToMemory(benchmark::State& state) {
  const size_t entries = static_cast<size_t>(state.range(0));
  const std::vector<std::string> args = {outputFile(entries)};
  const size_t size = syntheticOutput(entries).size();
  for (auto _ : state) {
    SizedSink sink(size);
    const auto ran = runChildProcess("/bin/cat", args, sink);
    benchmark::DoNotOptimize(sink.room().data());
    if (!ran || ran->status != 0 || sink.used() != size) state.SkipWithError("cat failed");
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * size));
}

// Read and decode, then the chart's collection and its first binning at 50 bins.
void FetchFromChild(benchmark::State& state) {
  const std::vector<std::string> args = {outputFile(static_cast<size_t>(state.range(0)))};
  const SystemClock clock;
  size_t entries = 0;
  for (auto _ : state) {
    LogShowOutput out = runLogShow("/bin/cat", args);
    if (!out.entries) {
      state.SkipWithError("the output did not decode");
      break;
    }
    auto document = std::make_unique<Document>(clock);
    document->theJSONDictionaries = std::make_shared<const EntryList>(std::move(*out.entries));
    document->startDate = kSyntheticStart;
    document->endDate = kSyntheticEnd;
    const uint64_t collection = beginChartCollection(*document);
    indexSubsystems(*document, collectChartEntries(*document->theJSONDictionaries,
                                                   document->startDate, collection));
    entries = document->theJSONDictionaries->size();
    benchmark::DoNotOptimize(document->logBarValue.data());
    state.PauseTiming();  // freeing the document is not part of the fetch
    document.reset();
    state.ResumeTiming();
  }
  state.counters["entries"] = static_cast<double>(entries);
}

BENCHMARK(ReadChildToMemory)
    ->Arg(1000000)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);
BENCHMARK(FetchFromChild)
    ->Arg(1000000)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);

const bool registered = [] {
  compareWithFloor("FetchFromChild", "ReadChildToMemory");
  return true;
}();

}  // namespace
}  // namespace kavor::bench
