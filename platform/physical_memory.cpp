#include "platform/physical_memory.h"

#include <unistd.h>

namespace kavor {

uint64_t physicalMemoryBytes() {
  const long pages = ::sysconf(_SC_PHYS_PAGES);
  const long pageSize = ::sysconf(_SC_PAGESIZE);
  if (pages <= 0 || pageSize <= 0) return 0;
  const auto p = static_cast<uint64_t>(pages);
  const auto s = static_cast<uint64_t>(pageSize);
  return p > UINT64_MAX / s ? UINT64_MAX : p * s;
}

}  // namespace kavor
