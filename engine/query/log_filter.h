#pragma once
// The filter of the main window: which entries the styled log keeps, by their message.

#include <memory>
#include <string>
#include <string_view>

#include "engine/core/combo_box_model.h"
#include "engine/query/filter_budget.h"
#include "platform/settings_store.h"

namespace kavor {

class CaselessText;

// What the filter box asks for: nothing, or a name and a text. A name beginning with "*" marks
// the text as a regular expression.
struct FilterChoice {
  bool active = false;
  std::string name;
  std::string text;

  static FilterChoice none() { return {}; }
  // Typed into the box: name and text are both what the box shows.
  static FilterChoice typed(std::string text) { return {true, text, text}; }
  static FilterChoice row(std::string name, std::string text) {
    return {true, std::move(name), std::move(text)};
  }
  // The text is meant as a regular expression (it is taken as plain text if it does not compile).
  bool asksForExpression() const { return active && name.starts_with('*'); }
};

// Row 0 is no filter whatever its text; a typed box filters by what it shows; any other row by
// that entry of the filter list (a row past the end, like selectedListText, by empty texts).
FilterChoice filterChoiceFromBox(const ComboBoxModel& box, const NamedList& list);

class LogFilter {
 public:
  // locale: an ICU locale id for plain-text matching; empty for the user's default locale.
  // budget: the time all the regular expression's matches may take together.
  explicit LogFilter(const FilterChoice& choice, std::string_view locale = {},
                     FilterBudget budget = {});
  ~LogFilter();
  LogFilter(const LogFilter&) = delete;
  LogFilter& operator=(const LogFilter&) = delete;

  bool active() const { return active_; }
  // True when the name asked for a regular expression and the text compiled as one.
  bool isRegularExpression() const;

  // A regular expression matching anywhere in the message, or the plain text contained in it
  // ignoring case. A match cut short (too slow on its own, or the budget spent) is false and
  // counted as undecided. Not for use from two threads at once.
  bool matches(std::string_view message);

  // The regular expression has used its budget: every further message is undecided.
  bool budgetSpent() const;
  size_t undecided() const { return undecided_; }

 private:
  struct Regex;
  bool active_ = false;
  size_t undecided_ = 0;
  std::unique_ptr<Regex> regex_;
  std::unique_ptr<CaselessText> plain_;
};

}  // namespace kavor
