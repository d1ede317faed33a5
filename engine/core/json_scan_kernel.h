#pragma once
// The block loop of JsonArrayScanner, compiled once per instruction set by the files that include
// this header. Everything here has internal linkage, so the copies never mix at link time.

#include <bit>
#include <cstddef>
#include <cstdint>

#include "engine/core/json_scan_state.h"

namespace kavor {
namespace {

struct Masks {
  uint64_t quote = 0;
  uint64_t backslash = 0;
  uint64_t brackets = 0;  // before strings are taken out
};

// Characters escaped by a backslash, given the backslashes of the block; `prevEscaped` carries an
// escape that runs over from the previous block. Counts runs of backslashes without a loop: a
// run that starts on an even bit escapes the character after it when its length is odd.
inline uint64_t findEscaped(uint64_t backslash, uint64_t& prevEscaped) {
  backslash &= ~prevEscaped;
  const uint64_t followsEscape = backslash << 1 | prevEscaped;
  constexpr uint64_t kEvenBits = 0x5555555555555555ull;
  const uint64_t oddSequenceStarts = backslash & ~kEvenBits & ~followsEscape;
  uint64_t sequencesStartingOnEvenBits = 0;
  prevEscaped = __builtin_add_overflow(oddSequenceStarts, backslash, &sequencesStartingOnEvenBits);
  const uint64_t invertMask = sequencesStartingOnEvenBits << 1;
  return (kEvenBits ^ invertMask) & followsEscape;
}

// Scans the whole 64-byte blocks of data[0, size); positions are reported as base + offset.
// Returns how many bytes were consumed: all whole blocks, or up to the array's closing bracket.
template <class Classify, class PrefixXor>
inline size_t scanBlocksWith(const char* data, size_t size, size_t base, JsonScanState& st,
                             Classify classify, PrefixXor prefixXor) {
  size_t offset = 0;
  for (; size - offset >= 64; offset += 64) {
    const char* block = data + offset;
    const Masks m = classify(block);
    const uint64_t escaped = findEscaped(m.backslash, st.prevEscaped);
    const uint64_t inString = prefixXor(m.quote & ~escaped) ^ st.prevInString;
    st.prevInString = static_cast<uint64_t>(static_cast<int64_t>(inString) >> 63);
    for (uint64_t bits = m.brackets & ~inString; bits; bits &= bits - 1) {
      const int i = std::countr_zero(bits);
      const char c = block[i];
      if ((c | 0x20) == '{') {
        ++st.depth;
      } else if (--st.depth == 1) {
        st.lastElementEnd = base + offset + static_cast<size_t>(i);
      } else if (st.depth == 0) {
        st.close = base + offset + static_cast<size_t>(i);
        st.badClose = c != ']';
        return offset + static_cast<size_t>(i) + 1;
      }
    }
  }
  return offset;
}

}  // namespace
}  // namespace kavor
