#include "engine/query/filter_budget.h"

#include <utility>

#include "platform/number_text.h"

namespace kavor {

namespace {

constexpr std::string_view kTooSlowPrefix = "The filter's regular expression is too slow";
constexpr std::string_view kPassStopped = ": showing the entries matched in the first ";
constexpr std::string_view kSomeMessages = " for some messages: ";

}  // namespace

MatchTimer::MatchTimer(FilterBudget budget) : budget_(std::move(budget)) {}

std::chrono::nanoseconds MatchTimer::now() const {
  if (budget_.clock) return budget_.clock();
  return std::chrono::steady_clock::now().time_since_epoch();
}

void MatchTimer::begin() {
  began_ = now();
}

bool MatchTimer::overrun() {
  if (used_ + (now() - began_) >= budget_.total) spent_ = true;
  return spent_;
}

void MatchTimer::end() {
  used_ += now() - began_;
  if (used_ >= budget_.total) spent_ = true;
}

std::optional<std::string> slowFilterNotice(bool passStopped, size_t undecided,
                                            std::chrono::nanoseconds total) {
  if (!passStopped && undecided == 0) return std::nullopt;
  std::string text(kTooSlowPrefix);
  if (passStopped) {
    text += kPassStopped;
    text += shortestDoubleText(std::chrono::duration<double>(total).count());
    text += " s.";
  } else {
    text += kSomeMessages;
    text += std::to_string(undecided);
    text += undecided == 1 ? " entry is left out." : " entries are left out.";
  }
  return text;
}

}  // namespace kavor
