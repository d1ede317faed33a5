#pragma once
// Synthetic output of the log tool's "show --style json", shaped like the real thing: pretty
// printed with "key" : value, keys in varying order, "/" escaped as "\/", a nested backtrace,
// extra keys the decoder drops, 64-bit identifiers, signposts and activities among the entries.
// Deterministic: the same seed and count give the same bytes.

#include <cstddef>
#include <cstdint>
#include <string>

namespace kavor::bench {

// Appends entries [first, first + count) of the stream with the given seed; the caller writes the
// opening "[" and closing "]" (see syntheticLog).
void appendSyntheticEntries(std::string& out, uint64_t seed, size_t first, size_t count);

// A whole output of `count` entries.
std::string syntheticLog(size_t count, uint64_t seed = 1);

}  // namespace kavor::bench
