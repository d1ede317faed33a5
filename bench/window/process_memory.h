#pragma once
// This process's resident memory as the kernel counts it (Linux: /proc/self/status).

#include <cstddef>

namespace kavor::bench {

struct ResidentMemory {
  size_t current = 0;  // bytes resident now (VmRSS)
  size_t peak = 0;     // the most resident at any time so far (VmHWM)
};

// Zeros when the system does not say.
ResidentMemory residentMemory();

}  // namespace kavor::bench
