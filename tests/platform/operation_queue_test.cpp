#include "platform/operation_queue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <vector>

namespace kavor {
namespace {

TEST(OperationQueue, RunsEveryOperationButNeverMoreThanTheLimitAtOnce) {
  std::atomic<int> done{0};
  std::atomic<int> active{0};
  std::atomic<int> highWater{0};
  constexpr int kOperations = 300;
  {
    OperationQueue queue(4);
    EXPECT_EQ(queue.threadCount(), 0u);  // threads start with the first operation
    for (int i = 0; i < kOperations; ++i) {
      queue.addOperation([&] {
        const int now = ++active;
        int seen = highWater.load();
        while (now > seen && !highWater.compare_exchange_weak(seen, now)) {
        }
        for (int spin = 0; spin < 1000; ++spin)
          std::atomic_signal_fence(std::memory_order_seq_cst);
        --active;
        ++done;
      });
    }
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_EQ(done.load(), kOperations);
    EXPECT_LE(queue.threadCount(), 4u);
    // Operations may add operations; the queue is idle only when those have run too.
    queue.addOperation([&] { queue.addOperation([&] { ++done; }); });
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_EQ(done.load(), kOperations + 1);
    for (int i = 0; i < 50; ++i)
      queue.addOperation([&] { ++done; });
  }  // the destructor waits for the last ones
  EXPECT_EQ(done.load(), kOperations + 51);
  EXPECT_GE(highWater.load(), 1);
  EXPECT_LE(highWater.load(), 4);
}

TEST(OperationQueue, OneAtATimeRunsInTheOrderAdded) {
  std::vector<int> order;
  {
    OperationQueue queue(0);  // asks for none, gets one
    for (int i = 0; i < 100; ++i)
      queue.addOperation([&order, i] { order.push_back(i); });
    EXPECT_EQ(queue.threadCount(), 1u);
  }
  ASSERT_EQ(order.size(), 100u);
  for (int i = 0; i < 100; ++i)
    EXPECT_EQ(order[static_cast<size_t>(i)], i);
}

}  // namespace
}  // namespace kavor
