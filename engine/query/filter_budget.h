#pragma once
// The time one styling pass may take over its filter's regular expression, from its first match
// on. ICU stops a single match after a fixed number of its steps (tens of milliseconds), but a
// pattern that backtracks without end pays that on every message, hours over millions of entries;
// the budget bounds the pass as a whole. Read on a monotonic clock, which tests replace with their
// own so that nothing depends on the machine's speed.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace kavor {

struct FilterBudget {
  // Called on the thread that styles.
  using Clock = std::function<std::chrono::nanoseconds()>;
  static constexpr std::chrono::nanoseconds kTotal = std::chrono::seconds(3);

  std::chrono::nanoseconds total = kTotal;
  Clock clock;  // empty: the steady clock
};

// Holds one pass's matches to its budget, counted from the first match. The clock is read before
// every few matches (a reading costs a tenth of a short match) and on every ICU step of a long
// one, so the pass overruns its budget by a few short matches at most. Not shared between threads.
class MatchTimer {
 public:
  static constexpr uint64_t kMatchesPerReading = 8;

  explicit MatchTimer(FilterBudget budget);

  // Before a match: true once the budget is spent.
  bool spentBeforeMatch();
  // During a match: true once the budget is spent.
  bool overrun();
  bool spent() const { return spent_; }

 private:
  void read();

  FilterBudget budget_;
  std::optional<std::chrono::nanoseconds> deadline_;
  uint64_t matches_ = 0;
  bool spent_ = false;
};

// What the window says above the result when the filter could not decide every entry: the pass
// ran out of its budget (the entries matched until then are shown), or single messages took too
// long to decide (their entries are not shown). None when every entry was decided.
std::optional<std::string> slowFilterNotice(bool passStopped, size_t undecided,
                                            std::chrono::nanoseconds total);

}  // namespace kavor
