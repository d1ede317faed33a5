#include "platform/clock.h"

#include <chrono>

namespace kavor {

double SystemClock::now() const {
  using namespace std::chrono;
  const double unixSeconds =
      duration_cast<duration<double>>(system_clock::now().time_since_epoch()).count();
  return unixSeconds - kUnixToAbsoluteTime;
}

}  // namespace kavor
