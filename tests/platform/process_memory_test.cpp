#include "platform/process_memory.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <vector>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define KAVOR_OWN_ALLOCATOR 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define KAVOR_OWN_ALLOCATOR 1
#endif
#endif

namespace kavor {
namespace {

constexpr size_t kMegabyte = size_t{1} << 20;

// Many small blocks freed below one still in use, as a replaced view's lines are: the heap cannot
// shrink from its end, so only a release gives their pages back.
TEST(ProcessMemory, FreedBlocksLeaveTheResidentSize) {
#ifdef KAVOR_OWN_ALLOCATOR
  GTEST_SKIP() << "the sanitizers' allocator keeps freed memory its own way";
#endif
  const size_t before = residentMemory().current;
  ASSERT_GT(before, 0u);
  std::vector<std::unique_ptr<char[]>> blocks;
  for (int i = 0; i < 200000; ++i) {
    blocks.emplace_back(new char[1000]);
    std::memset(blocks.back().get(), 1, 1000);
  }
  const auto kept = std::make_unique<char[]>(1000);
  ASSERT_GT(residentMemory().current, before + 150 * kMegabyte);
  std::vector<std::unique_ptr<char[]>>().swap(blocks);
  releaseFreeMemory();
  EXPECT_LT(residentMemory().current, before + 50 * kMegabyte);
}

}  // namespace
}  // namespace kavor
