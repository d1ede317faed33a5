#include "engine/query/log_filter.h"

#include <unicode/regex.h>
#include <unicode/utext.h>

#include "engine/core/caseless_search.h"

namespace kavor {

namespace {

// Bounds the work one message may cost a pattern that backtracks without end, so a careless
// pattern slows the window down instead of hanging it; such a message counts as not matching.
constexpr int32_t kMatchTimeLimit = 200;

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

  ~Regex() { utext_close(&message); }

  static std::unique_ptr<Regex> compile(std::string_view text) {
    auto regex = std::make_unique<Regex>();
    UErrorCode status = U_ZERO_ERROR;
    UParseError where;
    regex->pattern.reset(
        icu::RegexPattern::compile(icu::UnicodeString::fromUTF8(icu::StringPiece(
                                       text.data(), static_cast<int32_t>(text.size()))),
                                   0, where, status));
    if (U_FAILURE(status)) return nullptr;
    regex->matcher.reset(regex->pattern->matcher(status));
    if (U_FAILURE(status)) return nullptr;
    regex->matcher->setTimeLimit(kMatchTimeLimit, status);
    return regex;
  }

  bool find(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    utext_openUTF8(&message, text.data(), static_cast<int64_t>(text.size()), &status);
    if (U_FAILURE(status)) return false;
    matcher->reset(&message);
    const bool found = matcher->find(0, status);
    return U_SUCCESS(status) && found;
  }
};

LogFilter::LogFilter(const FilterChoice& choice, std::string_view locale) : active_(choice.active) {
  if (!active_) return;
  if (choice.name.starts_with('*')) regex_ = Regex::compile(choice.text);
  // A text that does not compile is still a filter: the plain text.
  if (!regex_) plain_ = std::make_unique<CaselessText>(choice.text, locale);
}

LogFilter::~LogFilter() = default;

bool LogFilter::isRegularExpression() const {
  return regex_ != nullptr;
}

bool LogFilter::matches(std::string_view message) {
  if (!active_) return true;
  if (regex_) return regex_->find(message);
  return plain_->foundIn(message);
}

}  // namespace kavor
