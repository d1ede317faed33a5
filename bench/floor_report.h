#pragma once
// Speed is judged against a floor measured in the same run: each benchmark family names the
// family it is compared with, and the report ends with the ratios of their times.

#include <string>

namespace kavor::bench {

// Benchmarks of `measured` are compared with the benchmark of `floor` that has the same argument
// ("DecodePipe/1000000" with "ReadPipeToMemory/1000000"). Either may name one argument instead:
// "StyleCapped/1000000" against "StyleCapped/1000", or every "StyleAll" against
// "ReadPipeToMemory/100000".
void compareWithFloor(const std::string& measured, const std::string& floor);

// Runs the registered benchmarks with the console report plus the ratio table.
int runBenchmarks(int argc, char** argv);

}  // namespace kavor::bench
