// The catalogue of a logarchive of many files, as the Logarchive Tool makes it, against the
// floor of listing the same folders and reading each file's status.

#include <benchmark/benchmark.h>
#include <sys/stat.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "bench/floor_report.h"
#include "engine/archive/archive_output.h"
#include "engine/archive/log_store_catalogue.h"

namespace kavor::bench {
namespace {

namespace fs = std::filesystem;

// An archive whose Persist folder holds `files` data files, made once per size and run.
const fs::path& archiveOf(size_t files) {
  static std::string made;
  static fs::path archive;
  if (!archive.empty() && made == std::to_string(files)) return archive;
  archive = fs::temp_directory_path() / ("kavor-bench-catalogue-" + std::to_string(files));
  fs::remove_all(archive);
  fs::create_directories(archive / "Persist");
  fs::create_directories(archive / "Special");
  for (size_t i = 0; i < files; ++i) {
    char name[32];
    std::snprintf(name, sizeof name, "%016zx.tracev3", i);
    std::FILE* file = std::fopen((archive / "Persist" / name).c_str(), "w");
    if (file) std::fclose(file);
  }
  made = std::to_string(files);
  return archive;
}

void Catalogue(benchmark::State& state) {
  const fs::path& archive = archiveOf(static_cast<size_t>(state.range(0)));
  size_t size = 0;
  for (auto _ : state) {
    TextOutput output;
    runCatalogue(archive, output);
    size = output.text().size();
  }
  state.counters["bytes"] = static_cast<double>(size);
}

void ListFolderStat(benchmark::State& state) {
  const fs::path& archive = archiveOf(static_cast<size_t>(state.range(0)));
  for (auto _ : state) {
    size_t regular = 0;
    for (const char* folder : {"", "Persist", "Special", "Signpost"}) {
      std::error_code ec;
      for (const auto& item : fs::directory_iterator(archive / folder, ec)) {
        struct stat info {};
        if (::lstat(item.path().c_str(), &info) == 0 && S_ISREG(info.st_mode)) ++regular;
      }
    }
    benchmark::DoNotOptimize(regular);
  }
}

BENCHMARK(ListFolderStat)->Arg(10000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(Catalogue)->Arg(10000)->UseRealTime()->Unit(benchmark::kMillisecond);

const bool registered = [] {
  compareWithFloor("Catalogue", "ListFolderStat");
  return true;
}();

}  // namespace
}  // namespace kavor::bench
