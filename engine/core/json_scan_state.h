#pragma once
// What the array scanner carries from one block of bytes to the next, and its block kernels.

#include <cstddef>
#include <cstdint>

namespace kavor {

struct JsonScanState {
  static constexpr size_t npos = static_cast<size_t>(-1);
  int64_t depth = 0;
  uint64_t prevInString = 0;  // all ones when the previous block ended inside a string
  uint64_t prevEscaped = 0;   // 1 when the previous block ended with an unfinished escape
  size_t lastElementEnd = npos;
  size_t close = npos;    // where depth came back to 0
  bool badClose = false;  // ... and it was a "}"
};

// Kernels for whole 64-byte blocks; see scanBlocksWith. The AVX2 one exists on x86-64 builds and
// is only called when the processor has AVX2 and carry-less multiplication.
size_t scanBlocksBaseline(const char* data, size_t size, size_t base, JsonScanState& st);
size_t scanBlocksAvx2(const char* data, size_t size, size_t base, JsonScanState& st);
bool haveAvx2Kernel();

}  // namespace kavor
