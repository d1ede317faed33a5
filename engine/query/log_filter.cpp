#include "engine/query/log_filter.h"

#include <unicode/regex.h>
#include <unicode/utext.h>

#include <optional>
#include <utility>

#include "engine/core/caseless_search.h"
#include "engine/core/icu_regex.h"

namespace kavor {

namespace {

// ICU's steps for one message, each some ten thousand moves of its matcher: about 40-50 ms.
// Enough for an ordinary pattern over a long message; a pattern that backtracks without end
// gives up on that message and the pass goes on to the next, within the pass's budget.
constexpr int32_t kMatchTimeLimit = 200;

// Called by ICU once per step of a match.
UBool keepMatching(const void* timer, int32_t) {
  return !static_cast<MatchTimer*>(const_cast<void*>(timer))->overrun();
}

}  // namespace

FilterChoice filterChoiceFromBox(const ComboBoxModel& box, const NamedList& list) {
  const int64_t k = box.selectedIndex();
  if (k == 0) return FilterChoice::none();
  if (k < 0) return FilterChoice::typed(box.displayedString());
  if (static_cast<size_t>(k) < list.size() && k < box.rowCount()) {
    const ListEntry& entry = list[static_cast<size_t>(k)];
    return FilterChoice::row(entry.name, entry.text);
  }
  return FilterChoice::row({}, {});
}

struct LogFilter::Regex {
  std::unique_ptr<icu::RegexPattern> pattern;
  std::unique_ptr<icu::RegexMatcher> matcher;
  UText message = UTEXT_INITIALIZER;
  MatchTimer timer;

  explicit Regex(FilterBudget budget) : timer(std::move(budget)) {}
  ~Regex() { utext_close(&message); }

  static std::unique_ptr<Regex> compile(std::string_view text, FilterBudget budget) {
    auto compiled = compileRegex(text);
    if (!compiled) return nullptr;
    auto regex = std::make_unique<Regex>(std::move(budget));
    regex->pattern = std::move(*compiled);
    UErrorCode status = U_ZERO_ERROR;
    regex->matcher.reset(regex->pattern->matcher(status));
    if (U_FAILURE(status)) return nullptr;
    regex->matcher->setTimeLimit(kMatchTimeLimit, status);
    regex->matcher->setMatchCallback(keepMatching, &regex->timer, status);
    return regex;
  }

  // Empty when the match was cut short.
  std::optional<bool> find(std::string_view text) {
    if (timer.spentBeforeMatch()) return std::nullopt;
    UErrorCode status = U_ZERO_ERROR;
    utext_openUTF8(&message, text.data(), static_cast<int64_t>(text.size()), &status);
    if (U_FAILURE(status)) return false;
    matcher->reset(&message);
    const bool found = matcher->find(0, status);
    if (status == U_REGEX_TIME_OUT || status == U_REGEX_STOPPED_BY_CALLER) return std::nullopt;
    return U_SUCCESS(status) && found;
  }
};

LogFilter::LogFilter(const FilterChoice& choice, std::string_view locale, FilterBudget budget)
    : active_(choice.active) {
  if (!active_) return;
  if (choice.asksForExpression()) regex_ = Regex::compile(choice.text, std::move(budget));
  // A text that does not compile is still a filter: the plain text.
  if (!regex_) plain_ = std::make_unique<CaselessText>(choice.text, locale);
}

LogFilter::~LogFilter() = default;

bool LogFilter::isRegularExpression() const {
  return regex_ != nullptr;
}

bool LogFilter::budgetSpent() const {
  return regex_ && regex_->timer.spent();
}

bool LogFilter::matches(std::string_view message) {
  if (!active_) return true;
  if (!regex_) return plain_->foundIn(message);
  const std::optional<bool> found = regex_->find(message);
  if (!found) ++undecided_;
  return found.value_or(false);
}

}  // namespace kavor
