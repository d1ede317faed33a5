#include "engine/query/entry_styler.h"

#include <algorithm>
#include <vector>

#include "engine/core/field_table.h"
#include "engine/core/user_characters.h"
#include "engine/query/style_items.h"

namespace kavor {

namespace {

// The tool's timestamp: "2020-05-01 09:41:07.123456+0100".
constexpr size_t kTimeOfDayStart = 11;
constexpr size_t kTimestampWithoutZone = 26;
constexpr size_t kShortTextLimit = 21;
constexpr size_t kDroppedTail = 20;

// The field's text before its letters apply; scratch holds texts that are made, not stored.
std::string_view fieldText(const FieldValue& value, FieldKind kind, std::string& scratch) {
  if (!value.present()) return {};
  if (kind == FieldKind::null) return "null";
  if (value.kind() == ValueKind::text) return value.text();
  scratch.clear();
  value.appendPlainText(scratch);
  return scratch;
}

std::string_view cut(std::string_view text, FieldCut how, UserCharacters& chars) {
  switch (how) {
    case FieldCut::none:
      return text;
    case FieldCut::timeOfDay: {
      // A timestamp too short to hold the time of day is shown whole.
      const size_t end = chars.prefixBytes(text, kTimestampWithoutZone);
      if (end == UserCharacters::npos) return text;
      const size_t begin = chars.prefixBytes(text, kTimeOfDayStart);
      return text.substr(begin, end - begin);
    }
    case FieldCut::dateAndTime:
      return chars.first(text, kTimestampWithoutZone);
    case FieldCut::first21:
      return chars.first(text, kShortTextLimit);
    case FieldCut::dropLast20: {
      if (text.size() < kShortTextLimit) return text;  // fewer bytes, fewer characters
      const size_t n = chars.count(text);
      return n < kShortTextLimit ? text : text.substr(0, chars.prefixBytes(text, n - kDroppedTail));
    }
    case FieldCut::fileName: {
      const size_t slash = text.rfind('/');
      return slash == std::string_view::npos ? text : text.substr(slash + 1);
    }
  }
  return text;
}

struct ResolvedItem {
  EntryKey key;
  FieldKind kind;
  FieldCut cut;
  TextColour colour;
};

std::vector<ResolvedItem> resolve(std::string_view styleText, int osVersion) {
  const auto table = fieldTable(osVersion);
  std::vector<ResolvedItem> items;
  for (const StyleItem& item : parseStyleText(styleText, highestFieldNumber(osVersion))) {
    const Field& field = table[static_cast<size_t>(item.field)];
    items.push_back(ResolvedItem{field.key, field.kind, item.cut, item.colour});
  }
  return items;
}

// The walk stopped at entry `from` with `counted` entries counted: a cut only when entries the
// limit would count are left.
std::optional<LimitCut> limitCutAt(const StylerInput& input, size_t from, int64_t counted) {
  const EntryList& entries = *input.entries;
  size_t total = static_cast<size_t>(counted);
  for (size_t i = from; i < entries.size(); ++i) {
    if (input.stop.stop_requested()) return std::nullopt;
    if (input.show.shows(entries.value(i, EntryKey::eventType))) ++total;
  }
  if (total == static_cast<size_t>(counted)) return std::nullopt;
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
  const std::vector<ResolvedItem> items = resolve(input.styleText, input.osVersion);
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
      out.limitCut = limitCutAt(input, i, passed);
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
      const FieldValue value = entries.value(i, EntryKey::eventMessage);
      if (!value.present()) continue;
      if (!filter.matches(fieldText(value, FieldKind::text, message))) continue;
    }
    for (const ResolvedItem& item : items) {
      const std::string_view text =
          cut(fieldText(entries.value(i, item.key), item.kind, scratch), item.cut, chars);
      const size_t begin = out.text.text.size();
      out.text.text.append(text);
      out.text.text += ' ';
      if (item.colour != TextColour::text)
        out.text.runs.push_back(ColourRun{begin, text.size() + 1, item.colour});
    }
    out.text.text += '\n';
  }
  out.undecidedMessages = filter.undecided();
  out.notice = slowFilterNotice(out.filterStopped, out.undecidedMessages, input.filterBudget.total);
  if (out.limitCut) out.limitNotice = limitNotice(*out.limitCut, input.locale);
  return out;
}

}  // namespace kavor
