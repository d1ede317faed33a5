#include "engine/core/memory_budget.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace kavor {
namespace {

EnvLookup budgetVariable(std::optional<std::string> value) {
  return [value](std::string_view name) -> std::optional<std::string> {
    if (name != kFetchMemoryBudgetVariable) return std::nullopt;
    return value;
  };
}

TEST(FetchMemoryBudget, HalfThePhysicalMemoryUnlessTheEnvironmentSaysAPlausibleByteCount) {
  constexpr uint64_t physical = uint64_t{16} << 30;
  EXPECT_EQ(fetchMemoryBudget(physical, budgetVariable(std::nullopt)), physical / 2);
  EXPECT_EQ(fetchMemoryBudget(0, budgetVariable(std::nullopt)), size_t{4} << 30);
  EXPECT_EQ(fetchMemoryBudget(physical, budgetVariable("200000000")), 200000000u);
  EXPECT_EQ(fetchMemoryBudget(0, budgetVariable("200000000")), 200000000u);
  // Not a whole number of bytes, too small to decode anything, or more than the machine has.
  for (const char* bad : {"", " 200000000", "200000000 ", "200MB", "-200000000", "+200000000",
                          "2e8", "0", "1048575", "17179869185", "99999999999999999999999"}) {
    EXPECT_EQ(fetchMemoryBudget(physical, budgetVariable(bad)), physical / 2) << bad;
  }
}

}  // namespace
}  // namespace kavor
