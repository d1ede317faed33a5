// The scanner's kernel for any processor: SSE2 on x86-64 (always there), plain code elsewhere.

#include "engine/core/json_scan_kernel.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace kavor {

namespace {

#if defined(__SSE2__)
inline uint64_t movemask(__m128i v, int lane) {
  return uint64_t{static_cast<uint16_t>(_mm_movemask_epi8(v))} << (16 * lane);
}
#endif

inline Masks classify(const char* p) {
  Masks m;
#if defined(__SSE2__)
  const __m128i quote = _mm_set1_epi8('"');
  const __m128i backslash = _mm_set1_epi8('\\');
  const __m128i lower = _mm_set1_epi8(0x20);
  // "[" and "{", "]" and "}" differ only in bit 0x20.
  const __m128i open = _mm_set1_epi8('{');
  const __m128i close = _mm_set1_epi8('}');
  for (int lane = 0; lane < 4; ++lane) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16 * lane));
    const __m128i folded = _mm_or_si128(v, lower);
    m.quote |= movemask(_mm_cmpeq_epi8(v, quote), lane);
    m.backslash |= movemask(_mm_cmpeq_epi8(v, backslash), lane);
    m.brackets |=
        movemask(_mm_or_si128(_mm_cmpeq_epi8(folded, open), _mm_cmpeq_epi8(folded, close)), lane);
  }
#else
  for (int i = 0; i < 64; ++i) {
    const char c = p[i];
    const uint64_t bit = uint64_t{1} << i;
    if (c == '"')
      m.quote |= bit;
    else if (c == '\\')
      m.backslash |= bit;
    else if (c == '[' || c == ']' || c == '{' || c == '}')
      m.brackets |= bit;
  }
#endif
  return m;
}

// Bit i is the parity of bits 0..i: inside a string between an opening and a closing quote.
inline uint64_t prefixXor(uint64_t x) {
  x ^= x << 1;
  x ^= x << 2;
  x ^= x << 4;
  x ^= x << 8;
  x ^= x << 16;
  x ^= x << 32;
  return x;
}

}  // namespace

size_t scanBlocksBaseline(const char* data, size_t size, size_t base, JsonScanState& st) {
  return scanBlocksWith(data, size, base, st, classify, prefixXor);
}

#if !defined(KAVOR_AVX2_KERNEL)
size_t scanBlocksAvx2(const char* data, size_t size, size_t base, JsonScanState& st) {
  return scanBlocksBaseline(data, size, base, st);
}
bool haveAvx2Kernel() {
  return false;
}
#endif

}  // namespace kavor
