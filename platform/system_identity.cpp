#include "platform/system_identity.h"

#include <uuid/uuid.h>

#ifdef __APPLE__
#include <mach/mach_time.h>
#else
#include <time.h>
#endif

namespace kavor {

uint64_t monotonicTicks() {
#ifdef __APPLE__
  return mach_absolute_time();
#else
  timespec now{};
  // Cannot fail for this clock on any Linux this builds for.
  ::clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<uint64_t>(now.tv_sec) * 1000000000u + static_cast<uint64_t>(now.tv_nsec);
#endif
}

std::string randomUuidString() {
  uuid_t uuid;
  uuid_generate_random(uuid);
  char text[37];  // 36 characters and the terminator
  uuid_unparse_upper(uuid, text);
  return text;
}

}  // namespace kavor
