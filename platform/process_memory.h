#pragma once
// This process's memory as the system sees it: how much is resident, and giving back what the
// allocator holds free, so that the resident size follows what is in use once a large result
// has been replaced by a smaller one.

#include <cstddef>

namespace kavor {

struct ResidentMemory {
  size_t current = 0;  // bytes resident now
  size_t peak = 0;     // the most resident at any time so far
};

// Zeros where the system does not say (it does on Linux).
ResidentMemory residentMemory();

// Hands the allocator's free memory back to the system, in every thread's arena: freed blocks
// stay resident otherwise wherever a block still in use lies above them. Takes milliseconds.
void releaseFreeMemory();

}  // namespace kavor
