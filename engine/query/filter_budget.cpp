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

bool MatchTimer::spentBeforeMatch() {
  if (!spent_ && matches_++ % kMatchesPerReading == 0) read();
  return spent_;
}

bool MatchTimer::overrun() {
  read();
  return spent_;
}

void MatchTimer::read() {
  const std::chrono::nanoseconds now =
      budget_.clock ? budget_.clock() : std::chrono::steady_clock::now().time_since_epoch();
  if (!deadline_) deadline_ = now + budget_.total;
  if (now >= *deadline_) spent_ = true;
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
