#pragma once
// The styled log's options: the style, the filter, the entry limit, the View switches and the
// colours, shared by the commands that print a styled log.

#include <optional>
#include <span>
#include <string>

#include "cli/arguments.h"
#include "cli/styled_output.h"
#include "engine/query/entry_styler.h"

namespace kavor::cli {

std::span<const OptionSpec> styleOptions();

struct StyleChoice {
  StylerInput input;  // all but the entries, the style text and the system version
  std::string styleText;
  std::optional<std::string> styleName;  // a factory style, whose text depends on the version
  ColourMode mode = ColourMode::plain;
  bool counts = false;
};

// When the options are not usable the problem has been reported and exitStatus holds the status.
std::optional<StyleChoice> styleChoiceFrom(const Arguments& args, int& exitStatus);

// The styler's input for the system version, its style text kept in styleText; none, with the
// problem reported, for an unknown style name.
std::optional<StylerInput> stylerInputFor(const StyleChoice& choice, int osVersion,
                                          std::string& styleText, int& exitStatus);
// The styled log on standard output; on standard error the entry count label when asked, and
// the notices of a partial log.
void writeStyledEntries(const StyleChoice& choice, const StyledEntries& styled);

// Both for entries at hand; the exit status.
int printStyled(const StyleChoice& choice, int osVersion, const EntryList& entries);

}  // namespace kavor::cli
