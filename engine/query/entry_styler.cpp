#include "engine/query/entry_styler.h"

#include <algorithm>
#include <vector>

#include "engine/core/user_characters.h"
#include "engine/query/style_columns.h"

namespace kavor {

namespace {

// The filter reads the message whole, as text.
constexpr StyleColumn kMessage{EntryKey::eventMessage, FieldKind::text, FieldCut::none,
                               TextColour::text};

// The walk stopped with `counted` entries counted: a cut only when the list holds more that the
// limit would count.
std::optional<LimitCut> limitCutAt(const StylerInput& input, int64_t counted) {
  const size_t total = input.show.countShown(*input.entries);
  if (total <= static_cast<size_t>(counted)) return std::nullopt;
  return LimitCut{static_cast<size_t>(counted), total};
}

}  // namespace

StylerInput StyleRequest::input() const {
  StylerInput in = choices;
  in.entries = entries.get();
  in.styleText = styleText;
  in.locale = locale;
  return in;
}

bool stylesQuickly(const StylerInput& input) {
  if (!input.entries) return true;
  if (input.filter.asksForExpression()) return false;
  size_t styled = input.entries->size();
  if (input.limitEntries && input.theLogCap >= 0)
    styled = std::min(styled, static_cast<size_t>(input.theLogCap) + 1);
  return styled <= kQuickStyledEntries;
}

StyledEntries styleEntries(const StylerInput& input) {
  StyledEntries out;
  LogFilter filter(input.filter, input.locale, input.filterBudget);
  out.columns = styleColumns(input.styleText, input.osVersion);
  if (!input.entries) return out;

  const EntryList& entries = *input.entries;
  std::string& label = out.entryCount.emplace();
  if (input.limitEntries) label += '(';
  label += std::to_string(entries.size());
  if (input.limitEntries) label += ')';

  UserCharacters chars;
  std::string scratch;
  std::string message;
  int64_t passed = 0;
  for (size_t i = 0; i < entries.size(); ++i) {
    if (input.limitEntries && passed > input.theLogCap) {
      out.limitCut = limitCutAt(input, passed);
      break;
    }
    if (input.stop.stop_requested()) break;
    if (!input.show.shows(entries.value(i, EntryKey::eventType))) continue;
    ++passed;  // entries the filter drops still count toward the limit
    if (filter.active()) {
      if (filter.budgetSpent()) {
        out.filterStopped = true;
        break;
      }
      if (!entries.value(i, EntryKey::eventMessage).present()) continue;
      if (!filter.matches(columnText(entries, i, kMessage, chars, message))) continue;
    }
    out.shown.push_back({out.text.text.size(), i});
    for (const StyleColumn& column : out.columns) {
      const std::string_view text = columnText(entries, i, column, chars, scratch);
      const size_t begin = out.text.text.size();
      out.text.text.append(text);
      out.text.text += ' ';
      if (column.colour != TextColour::text)
        out.text.runs.push_back(ColourRun{begin, text.size() + 1, column.colour});
    }
    out.text.text += '\n';
  }
  out.undecidedMessages = filter.undecided();
  out.notice = slowFilterNotice(out.filterStopped, out.undecidedMessages, input.filterBudget.total);
  if (out.limitCut) out.limitNotice = limitNotice(*out.limitCut, input.locale);
  return out;
}

}  // namespace kavor
