#pragma once
// The machine's physical memory, for budgets that scale with it.

#include <cstdint>

namespace kavor {

// Bytes of physical memory; 0 when the system does not say.
uint64_t physicalMemoryBytes();

}  // namespace kavor
