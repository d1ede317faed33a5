#include "engine/query/style_columns.h"

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

}  // namespace

std::vector<StyleColumn> styleColumns(std::string_view styleText, int osVersion) {
  const auto table = fieldTable(osVersion);
  std::vector<StyleColumn> columns;
  for (const StyleItem& item : parseStyleText(styleText, highestFieldNumber(osVersion))) {
    const Field& field = table[static_cast<size_t>(item.field)];
    columns.push_back(StyleColumn{field.key, field.kind, item.cut, item.colour});
  }
  return columns;
}

std::string_view columnText(const EntryList& entries, size_t entry, const StyleColumn& column,
                            UserCharacters& chars, std::string& scratch) {
  return cut(fieldText(entries.value(entry, column.key), column.kind, scratch), column.cut, chars);
}

}  // namespace kavor
