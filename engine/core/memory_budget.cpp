#include "engine/core/memory_budget.h"

#include <charconv>
#include <cstdio>

#include "platform/physical_memory.h"

namespace kavor {

namespace {

constexpr uint64_t kSmallestBudget = uint64_t{1} << 20;
constexpr uint64_t kBudgetWhenUnknown = uint64_t{4} << 30;

size_t clampToSize(uint64_t bytes) {
  return bytes > SIZE_MAX ? SIZE_MAX : static_cast<size_t>(bytes);
}

}  // namespace

size_t fetchMemoryBudget(uint64_t physicalBytes, const EnvLookup& env) {
  const uint64_t fallback = physicalBytes ? physicalBytes / 2 : kBudgetWhenUnknown;
  const std::optional<std::string> text = env(kFetchMemoryBudgetVariable);
  if (!text) return clampToSize(fallback);
  uint64_t bytes = 0;
  const char* end = text->data() + text->size();
  const auto [stop, error] = std::from_chars(text->data(), end, bytes);
  const bool wellFormed = error == std::errc{} && stop == end;
  if (!wellFormed || bytes < kSmallestBudget || (physicalBytes && bytes > physicalBytes))
    return clampToSize(fallback);
  return clampToSize(bytes);
}

size_t fetchMemoryBudget() {
  return fetchMemoryBudget(physicalMemoryBytes(), processEnvironment());
}

std::string byteCountText(uint64_t bytes) {
  if (bytes < 1000) return std::to_string(bytes) + " bytes";
  static constexpr const char* kUnits[] = {"kB", "MB", "GB", "TB", "PB", "EB"};
  double value = static_cast<double>(bytes) / 1000;
  size_t unit = 0;
  while (value >= 999.95 && unit + 1 < std::size(kUnits)) {
    value /= 1000;
    ++unit;
  }
  char text[32];
  // One decimal below 10 ("8.4 MB"), whole numbers above ("200 MB").
  if (value < 9.95)
    std::snprintf(text, sizeof text, "%.1f %s", value, kUnits[unit]);
  else
    std::snprintf(text, sizeof text, "%.0f %s", value, kUnits[unit]);
  return text;
}

Error outputTooLargeError(std::string_view why) {
  return Error{ErrorKind::tooLarge,
               std::string(kOutputTooLarge) + ": " + std::string(why) +
                   "; fetch a shorter time window or use a narrower predicate"};
}

Error memoryRefusedError() {
  return outputTooLargeError("the system refused more memory for it");
}

}  // namespace kavor
