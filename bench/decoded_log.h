#pragma once
// Synthetic log output decoded once per run, for the benchmarks of what comes after decoding.

#include <cstddef>
#include <string>

#include "engine/core/entry_list.h"

namespace kavor::bench {

// The synthetic output of `entries` entries (seed 1), made once and kept for the run.
const std::string& syntheticOutput(size_t entries);

// That output decoded; a decoding failure ends the run, since every figure would be meaningless.
const EntryList& decodedSyntheticLog(size_t entries);

}  // namespace kavor::bench
