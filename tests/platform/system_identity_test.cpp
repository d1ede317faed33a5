#include "platform/system_identity.h"

#include <gtest/gtest.h>

#include <cstring>

namespace kavor {
namespace {

TEST(SystemIdentity, UuidsAreRandomVersionFourInUpperCaseAndTicksNeverGoBack) {
  const std::string uuid = randomUuidString();
  const std::string form = "hhhhhhhh-hhhh-4hhh-vhhh-hhhhhhhhhhhh";  // version 4, variant 1
  ASSERT_EQ(uuid.size(), form.size()) << uuid;
  for (size_t i = 0; i < form.size(); ++i) {
    const char* allowed = form[i] == 'h' ? "0123456789ABCDEF" : form[i] == 'v' ? "89AB" : nullptr;
    EXPECT_TRUE(allowed ? std::strchr(allowed, uuid[i]) != nullptr : uuid[i] == form[i]) << uuid;
  }
  EXPECT_NE(randomUuidString(), uuid);

  uint64_t last = monotonicTicks();
  for (int i = 0; i < 1000; ++i) {
    const uint64_t now = monotonicTicks();
    ASSERT_GE(now, last);
    last = now;
  }
}

}  // namespace
}  // namespace kavor
