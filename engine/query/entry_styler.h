#pragma once
// The styled log of the main window: one line per shown entry, made of the fields the style
// names, each cut and coloured by its letters, after the View switches' type test, the entry
// limit and the filter. Rebuilt from the entries and the current choices on every run.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "engine/core/entry_list.h"
#include "engine/core/styled_text.h"
#include "engine/query/log_filter.h"
#include "engine/query/settings_texts.h"
#include "engine/query/show_switches.h"

namespace kavor {

struct StylerInput {
  const EntryList* entries = nullptr;  // none when the window has no document
  std::string_view styleText;          // by selectedListText over the style box
  FilterChoice filter;
  ShowSwitches show;
  bool limitEntries = true;
  int64_t theLogCap = kFactoryLogLimit;
  int osVersion = 11;
  std::string_view locale;  // ICU locale id for the filter; empty for the user's
};

struct StyledEntries {
  StyledText text;
  // The entry count label, "(N)" with the limit on and "N" without, N the entries fetched; none
  // when there is no document, and the label keeps what it showed.
  std::optional<std::string> entryCount;
};

StyledEntries styleEntries(const StylerInput& input);

}  // namespace kavor
