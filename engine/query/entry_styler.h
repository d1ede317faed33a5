#pragma once
// The styled log of the main window: one line per shown entry, made of the fields the style
// names, each cut and coloured by its letters, after the View switches' type test, the entry
// limit and the filter. Rebuilt from the entries and the current choices on every run.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "engine/core/entry_list.h"
#include "engine/core/styled_text.h"
#include "engine/query/filter_budget.h"
#include "engine/query/limit_notice.h"
#include "engine/query/log_filter.h"
#include "engine/query/settings_texts.h"
#include "engine/query/show_switches.h"
#include "engine/query/style_columns.h"

namespace kavor {

struct StylerInput {
  const EntryList* entries = nullptr;  // none when the window has no document
  std::string_view styleText;          // by selectedListText over the style box
  FilterChoice filter;
  ShowSwitches show;
  bool limitEntries = true;
  int64_t theLogCap = kFactoryLogLimit;
  int osVersion = 11;
  std::string_view locale;  // ICU locale id for the filter and the numbers; empty for the user's
  FilterBudget filterBudget;
  // Asked when a newer pass replaces this one: the walk ends early, and its result is dropped.
  std::stop_token stop;
};

// The inputs of a pass held by value, for a pass that runs on a worker after its caller has moved
// on: the entries shared (they never change once decoded), the texts copied.
struct StyleRequest {
  std::shared_ptr<const EntryList> entries;
  std::string styleText;
  std::string locale;
  StylerInput choices;  // the rest; its entries, style text and locale are not read

  StylerInput input() const;
};

// Where one shown entry's line begins in the styled text, and its position in the entries.
struct ShownEntry {
  size_t textBegin = 0;
  size_t entry = 0;
};

struct StyledEntries {
  StyledText text;
  // The style's items, as the pieces of each line were made.
  std::vector<StyleColumn> columns;
  // One per shown entry, in text order.
  std::vector<ShownEntry> shown;
  // The entry count label, "(N)" with the limit on and "N" without, N the entries fetched; none
  // when there is no document, and the label keeps what it showed.
  std::optional<std::string> entryCount;
  // The filter's regular expression spent its budget: the walk stopped there, and the text holds
  // the entries matched until then.
  bool filterStopped = false;
  // Messages the expression took too long to decide; their entries are not shown.
  size_t undecidedMessages = 0;
  // What the window shows about either, above the result; none when every entry was decided.
  std::optional<std::string> notice;
  // The entry limit stopped the walk while entries it would count were left: how many it
  // counted of how many, and what the window says about it above the result.
  std::optional<LimitCut> limitCut;
  std::optional<std::string> limitNotice;
};

StyledEntries styleEntries(const StylerInput& input);

// Passes that style at most this many entries without a regular expression take milliseconds.
inline constexpr size_t kQuickStyledEntries = 10000;

// True when a pass takes a moment at most, so that it may run on the thread that asks: no
// regular expression to match, and few entries to style.
bool stylesQuickly(const StylerInput& input);

}  // namespace kavor
