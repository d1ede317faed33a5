#pragma once
// Wall-clock time as the system's absolute time: seconds since 2001-01-01 00:00:00 UTC.

namespace kavor {

inline constexpr double kUnixToAbsoluteTime = 978307200.0;  // seconds from 1970 to 2001

class Clock {
 public:
  virtual ~Clock() = default;
  virtual double now() const = 0;
};

class SystemClock final : public Clock {
 public:
  double now() const override;
};

// A clock that stands still until told otherwise; for tests.
class FixedClock final : public Clock {
 public:
  explicit FixedClock(double absoluteTime) : t_(absoluteTime) {}
  double now() const override { return t_; }
  void set(double absoluteTime) { t_ = absoluteTime; }

 private:
  double t_;
};

}  // namespace kavor
