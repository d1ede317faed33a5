// The scanner's kernel for processors with AVX2 and carry-less multiplication. This file alone is
// compiled with those instruction sets enabled; it runs only after a check of the processor.

#if defined(KAVOR_AVX2_KERNEL)

#include <immintrin.h>

#include "engine/core/json_scan_kernel.h"

namespace kavor {

namespace {

inline uint64_t movemask(__m256i v) {
  return static_cast<uint32_t>(_mm256_movemask_epi8(v));
}

inline Masks classify(const char* p) {
  const __m256i lo = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
  const __m256i hi = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p + 32));
  const __m256i quote = _mm256_set1_epi8('"');
  const __m256i backslash = _mm256_set1_epi8('\\');
  const __m256i lower = _mm256_set1_epi8(0x20);
  const __m256i open = _mm256_set1_epi8('{');
  const __m256i close = _mm256_set1_epi8('}');
  auto both = [](__m256i a, __m256i b) { return movemask(a) | movemask(b) << 32; };
  auto brackets = [&](__m256i v) {
    const __m256i folded = _mm256_or_si256(v, lower);
    return _mm256_or_si256(_mm256_cmpeq_epi8(folded, open), _mm256_cmpeq_epi8(folded, close));
  };
  Masks m;
  m.quote = both(_mm256_cmpeq_epi8(lo, quote), _mm256_cmpeq_epi8(hi, quote));
  m.backslash = both(_mm256_cmpeq_epi8(lo, backslash), _mm256_cmpeq_epi8(hi, backslash));
  m.brackets = both(brackets(lo), brackets(hi));
  return m;
}

// Multiplying by all ones without carries gives every prefix parity at once.
inline uint64_t prefixXor(uint64_t x) {
  const __m128i product =
      _mm_clmulepi64_si128(_mm_set_epi64x(0, static_cast<int64_t>(x)), _mm_set1_epi8(-1), 0);
  return static_cast<uint64_t>(_mm_cvtsi128_si64(product));
}

}  // namespace

size_t scanBlocksAvx2(const char* data, size_t size, size_t base, JsonScanState& st) {
  return scanBlocksWith(data, size, base, st, classify, prefixXor);
}

bool haveAvx2Kernel() {
  return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("pclmul");
}

}  // namespace kavor

#endif
