#pragma once
// How much memory a fetch may hold while its output is decoded, and the error it ends with when
// the output needs more. Whoever starts a fetch or decodes a file passes the budget on.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/expected.h"
#include "platform/system_paths.h"

namespace kavor {

inline constexpr std::string_view kFetchMemoryBudgetVariable = "KAVOR_FETCH_MEMORY_BUDGET";
inline constexpr std::string_view kOutputTooLarge = "the log output is too large";

// Half the physical memory (4 GiB when the system does not say how much it has), leaving the
// rest for the window's text and for other programs. KAVOR_FETCH_MEMORY_BUDGET replaces it when
// it holds a whole number of bytes from 1 MiB up to the physical memory; anything else there is
// ignored.
size_t fetchMemoryBudget(uint64_t physicalBytes, const EnvLookup& env);
// The same for this machine and this process's environment.
size_t fetchMemoryBudget();

// A byte count for people: "900 bytes", "8.4 MB", "200 MB", "1.5 GB".
std::string byteCountText(uint64_t bytes);

// Why the output cannot be held, followed by what to do about it.
Error outputTooLargeError(std::string_view why);
// The same when the system itself refused the memory.
Error memoryRefusedError();

}  // namespace kavor
