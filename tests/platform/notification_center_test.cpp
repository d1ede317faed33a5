#include "platform/notification_center.h"

#include <gtest/gtest.h>

#include <vector>

namespace kavor {
namespace {

TEST(NotificationCenter, DeliversToEveryObserverOfTheNameUntilTheObservationEnds) {
  NotificationCenter center;
  std::vector<int> calls;
  auto a = center.observe("Customs-Changed", [&] { calls.push_back(1); });
  auto b = center.observe("Customs-Changed", [&] { calls.push_back(2); });
  auto other = center.observe("Other", [&] { calls.push_back(3); });
  center.post("Customs-Changed");
  EXPECT_EQ(calls, (std::vector<int>{1, 2}));

  a.reset();
  calls.clear();
  center.post("Customs-Changed");
  EXPECT_EQ(calls, (std::vector<int>{2}));
}

TEST(NotificationCenter, ObserverMayEndItsOwnObservationWhileCalledAndMayOutliveTheCenter) {
  NotificationCenter::Observation survivor;
  {
    NotificationCenter center;
    int calls = 0;
    NotificationCenter::Observation self;
    self = center.observe("n", [&] {
      ++calls;
      self.reset();
    });
    center.post("n");
    center.post("n");
    EXPECT_EQ(calls, 1);
    survivor = center.observe("n", [] {});
  }
  survivor.reset();  // the center is gone: must not touch freed memory
}

}  // namespace
}  // namespace kavor
