#include "bench/window/process_memory.h"

#include <cstdio>
#include <cstring>

namespace kavor::bench {

ResidentMemory residentMemory() {
  ResidentMemory memory;
  FILE* status = std::fopen("/proc/self/status", "r");
  if (!status) return memory;
  char line[256];
  while (std::fgets(line, sizeof line, status)) {
    size_t kib = 0;
    if (std::sscanf(line, "VmRSS: %zu kB", &kib) == 1) memory.current = kib << 10;
    if (std::sscanf(line, "VmHWM: %zu kB", &kib) == 1) memory.peak = kib << 10;
  }
  std::fclose(status);
  return memory;
}

}  // namespace kavor::bench
