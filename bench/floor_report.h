#pragma once
// Speed is judged against a floor measured in the same run: each benchmark family names the
// family it is compared with, and the report ends with the ratios of their times.

#include <string>

namespace kavor::bench {

// Benchmarks whose name starts with `family` are compared with the benchmark of `floorFamily`
// that has the same argument ("DecodePipe/1000000" with "ReadPipeToMemory/1000000").
void compareWithFloor(const std::string& family, const std::string& floorFamily);

// Runs the registered benchmarks with the console report plus the ratio table.
int runBenchmarks(int argc, char** argv);

}  // namespace kavor::bench
