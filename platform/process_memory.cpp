#include "platform/process_memory.h"

#include <cstdio>

#if defined(__GLIBC__)
#include <malloc.h>
#elif defined(__APPLE__)
#include <malloc/malloc.h>
#endif

namespace kavor {

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

void returnFreedMemoryPromptly() {
#if defined(__GLIBC__)
  // Setting either bound fixes both: neither moves with later frees.
  mallopt(M_MMAP_THRESHOLD, 1 << 20);
  mallopt(M_TRIM_THRESHOLD, 4 << 20);
#endif
}

void releaseFreeMemory() {
#if defined(__GLIBC__)
  malloc_trim(0);
#elif defined(__APPLE__)
  malloc_zone_pressure_relief(nullptr, 0);
#endif
}

}  // namespace kavor
