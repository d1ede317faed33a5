// The archive builder's copy of a log store (folders of 10 MB files, 200 MB, or 2 GB with
// KAVOR_BENCH_HUGE=1) into a new logarchive, against `cp -r` of the same store in the same run:
// it must be no slower.

#include <benchmark/benchmark.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "bench/floor_report.h"
#include "engine/archive/archive_output.h"
#include "engine/archive/logarchive_builder.h"
#include "platform/child_process.h"

namespace kavor::bench {
namespace {

namespace fs = std::filesystem;

constexpr size_t kFileBytes = size_t{10} << 20;

// A store laid down once per run under the temporary folder, and removed at the end.
class Store {
 public:
  explicit Store(size_t megabytes) {
    std::string pattern = (fs::temp_directory_path() / "kavor-copy-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) std::abort();
    top_ = pattern;
    // Bytes that no file system could compress or share.
    std::mt19937_64 random(13);
    std::vector<uint64_t> words(kFileBytes / sizeof(uint64_t));
    const char* folders[] = {"Persist", "Special", "Signpost", "HighVolume"};
    fs::create_directories(source() / "diagnostics/timesync");
    fs::create_directories(source() / "uuidtext/00");
    std::ofstream(source() / "uuidtext/00/0123456789ABCDEF0123456789ABCD") << "image";
    for (size_t i = 0; i < megabytes / 10; ++i) {
      const fs::path folder = source() / "diagnostics" / folders[i % 4];
      fs::create_directories(folder);
      for (uint64_t& w : words)
        w = random();
      char name[32];
      std::snprintf(name, sizeof name, "%016zx.tracev3", i);
      std::ofstream out(folder / name, std::ios::binary);
      out.write(reinterpret_cast<const char*>(words.data()),
                static_cast<std::streamsize>(kFileBytes));
    }
    ::sync();  // the first copy should not share the disk with the store's own writing
  }
  ~Store() {
    std::error_code ignored;
    fs::remove_all(top_, ignored);
  }
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;

  // The folder of uuidtext and diagnostics, as a system's /var/db.
  fs::path source() const { return top_ / "db"; }
  fs::path target() const { return top_ / "copy.logarchive"; }

 private:
  fs::path top_;
};

const Store& storeOf(size_t megabytes) {
  static size_t made = 0;
  static std::unique_ptr<Store> store;
  if (made != megabytes) {
    store.reset();
    store = std::make_unique<Store>(megabytes);
    made = megabytes;
  }
  return *store;
}

// Times one copy per iteration; the copy is removed (and the disk settled) outside the timing.
template <class Copy>
void timeCopies(benchmark::State& state, Copy copy) {
  const Store& store = storeOf(static_cast<size_t>(state.range(0)));
  for (auto _ : state) {
    if (!copy(store.source(), store.target())) {
      state.SkipWithError("the copy failed");
      break;
    }
    state.PauseTiming();
    fs::remove_all(store.target());
    ::sync();
    state.ResumeTiming();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * state.range(0)) << 20);
}

void CpStore(benchmark::State& state) {
  timeCopies(state, [](const fs::path& from, const fs::path& to) {
    const std::vector<std::string> args = {"-r", from.string(), to.string()};
    StringSink out;
    const Expected<ChildExit> ran = runChildProcess("/bin/cp", args, out);
    return ran && ran->status == 0 && !ran->signalled;
  });
}

void BuildArchive(benchmark::State& state) {
  timeCopies(state, [](const fs::path& from, const fs::path& to) {
    TextOutput output;
    return runBuild(from, to, true, output) == 0;
  });
}

const bool registered = [] {
  const char* huge = std::getenv("KAVOR_BENCH_HUGE");
  const int64_t megabytes = huge && *huge == '1' ? 2000 : 200;
  for (auto* bench : {benchmark::RegisterBenchmark("CpStore", CpStore),
                      benchmark::RegisterBenchmark("BuildArchive", BuildArchive)})
    bench->Arg(megabytes)->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(3);
  compareWithFloor("BuildArchive", "CpStore");
  return true;
}();

}  // namespace
}  // namespace kavor::bench
