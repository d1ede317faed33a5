#include "engine/core/json_array_scanner.h"

#include <bit>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#elif defined(__ARM_NEON)
#include <arm_neon.h>
#endif

namespace kavor {

namespace {

struct Masks {
  uint64_t quote = 0;
  uint64_t backslash = 0;
  uint64_t structural = 0;  // brackets and commas, before strings are taken out
};

#if defined(__SSE2__)
inline uint64_t movemask(__m128i v, int lane) {
  return uint64_t{static_cast<uint16_t>(_mm_movemask_epi8(v))} << (16 * lane);
}
#endif

// One bit per byte of the 64-byte block for each character class.
inline Masks classify(const char* p) {
  Masks m;
#if defined(__SSE2__)
  const __m128i quote = _mm_set1_epi8('"');
  const __m128i backslash = _mm_set1_epi8('\\');
  const __m128i comma = _mm_set1_epi8(',');
  const __m128i lower = _mm_set1_epi8(0x20);
  // "[" and "{", "]" and "}" differ only in bit 0x20.
  const __m128i open = _mm_set1_epi8('{');
  const __m128i close = _mm_set1_epi8('}');
  for (int lane = 0; lane < 4; ++lane) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16 * lane));
    const __m128i folded = _mm_or_si128(v, lower);
    m.quote |= movemask(_mm_cmpeq_epi8(v, quote), lane);
    m.backslash |= movemask(_mm_cmpeq_epi8(v, backslash), lane);
    m.structural |= movemask(_mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(folded, open),
                                                       _mm_cmpeq_epi8(folded, close)),
                                          _mm_cmpeq_epi8(v, comma)),
                             lane);
  }
#else
  for (int i = 0; i < 64; ++i) {
    const char c = p[i];
    const uint64_t bit = uint64_t{1} << i;
    if (c == '"') m.quote |= bit;
    else if (c == '\\') m.backslash |= bit;
    else if (c == ',' || c == '[' || c == ']' || c == '{' || c == '}') m.structural |= bit;
  }
#endif
  return m;
}

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

// Bit i is the parity of the bits 0..i: inside a string between an opening and closing quote.
inline uint64_t prefixXor(uint64_t x) {
  x ^= x << 1;
  x ^= x << 2;
  x ^= x << 4;
  x ^= x << 8;
  x ^= x << 16;
  x ^= x << 32;
  return x;
}

inline bool isJsonSpace(char c) { return c == ' ' || c == '\n' || c == '\r' || c == '\t'; }

}  // namespace

void JsonArrayScanner::fail(std::string why) {
  state_ = State::failed;
  failure_ = std::move(why);
}

void JsonArrayScanner::scanPrologue(const char* buf, size_t end) {
  while (scanned_ < end && isJsonSpace(buf[scanned_])) ++scanned_;
  if (scanned_ == end) return;
  if (buf[scanned_] != '[') return fail("the output is not a JSON array");
  open_ = scanned_++;
  depth_ = 1;
  state_ = State::inArray;
}

void JsonArrayScanner::scanEpilogue(const char* buf, size_t end) {
  for (; scanned_ < end; ++scanned_) {
    if (!isJsonSpace(buf[scanned_])) return fail("text follows the end of the JSON array");
  }
}

void JsonArrayScanner::scanBlock(const char* block, size_t base) {
  const Masks m = classify(block);
  const uint64_t escaped = findEscaped(m.backslash, prevEscaped_);
  const uint64_t inString = prefixXor(m.quote & ~escaped) ^ prevInString_;
  prevInString_ = static_cast<uint64_t>(static_cast<int64_t>(inString) >> 63);
  for (uint64_t bits = m.structural & ~inString; bits; bits &= bits - 1) {
    const int i = std::countr_zero(bits);
    const char c = block[i];
    if (c == ',') {
      if (depth_ == 1) lastSeparator_ = base + static_cast<size_t>(i);
    } else if ((c | 0x20) == '{') {
      ++depth_;
    } else if (--depth_ == 0) {
      if (c != ']') return fail("the JSON array is closed by \"}\"");
      close_ = base + static_cast<size_t>(i);
      state_ = State::afterArray;
      return;
    }
  }
}

void JsonArrayScanner::scan(const char* buf, size_t end, bool final) {
  if (state_ == State::beforeArray) scanPrologue(buf, end);
  while (state_ == State::inArray && scanned_ < end) {
    const size_t base = scanned_;
    if (end - base >= 64) {
      scanBlock(buf + base, base);
    } else {
      if (!final) return;
      // The last piece: pad it with spaces, which change no state.
      char tail[64];
      std::memset(tail, ' ', sizeof tail);
      std::memcpy(tail, buf + base, end - base);
      scanBlock(tail, base);
    }
    if (state_ == State::afterArray) {
      scanned_ = close_ + 1;
    } else {
      scanned_ = std::min(base + 64, end);
    }
  }
  if (state_ == State::afterArray) scanEpilogue(buf, end);
  if (final && state_ == State::beforeArray) fail("the output is empty");
  if (final && state_ == State::inArray) fail("the JSON array is not closed: the output was cut short");
}

void JsonArrayScanner::shift(size_t count) {
  scanned_ -= count;
  auto move = [count](size_t& pos) {
    if (pos != npos) pos = pos >= count ? pos - count : npos;
  };
  move(open_);
  move(close_);
  move(lastSeparator_);
}

}  // namespace kavor
