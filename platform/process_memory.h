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

// Keeps the allocator from holding freed memory: large blocks are mapped apart and unmapped when
// freed, and free memory at the top of any thread's arena goes back once it passes a few
// megabytes. Left to itself, the allocator raises both bounds after freeing a large block, and
// a worker's arena then keeps tens of megabytes after a large result is gone. Call it first.
void returnFreedMemoryPromptly();

// Hands the allocator's free memory back to the system, in every thread's arena: freed blocks
// stay resident otherwise wherever a block still in use lies above them. Takes milliseconds.
void releaseFreeMemory();

}  // namespace kavor
