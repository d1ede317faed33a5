#include "bench/floor_report.h"

int main(int argc, char** argv) {
  return kavor::bench::runBenchmarks(argc, argv);
}
