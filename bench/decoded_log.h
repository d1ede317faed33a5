#pragma once
// Synthetic log output decoded once per run, for the benchmarks of what comes after decoding.

#include <cstddef>
#include <string>

#include "engine/core/entry_list.h"

namespace kavor::bench {

// A time window that holds every synthetic entry: they span 09:00 to about 14:33 on 2020-05-01
// at +0100. Absolute times.
inline constexpr double kSyntheticStart = 610012800.0;  // 2020-05-01 08:00:00 UTC
inline constexpr double kSyntheticEnd = kSyntheticStart + 6 * 3600;

// The synthetic output of `entries` entries (seed 1), made once and kept for the run.
const std::string& syntheticOutput(size_t entries);

// That output decoded; a decoding failure ends the run, since every figure would be meaningless.
const EntryList& decodedSyntheticLog(size_t entries);

}  // namespace kavor::bench
