#pragma once
// What an archive's Info.plist records of the moment it was made: the system's monotonic tick
// counter and a new random UUID.

#include <cstdint>
#include <string>

namespace kavor {

// Ticks of the monotonic clock that does not count time asleep (nanoseconds on Linux).
uint64_t monotonicTicks();

// A new random (version 4) UUID in its standard text form, upper case: 8-4-4-4-12 hex digits.
std::string randomUuidString();

}  // namespace kavor
