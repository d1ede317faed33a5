#include "engine/document/entry_details.h"

#include <simdjson.h>

namespace kavor {

namespace {

namespace dom = simdjson::dom;

void addNested(dom::element element, std::string key, int depth, std::vector<DetailRow>& rows) {
  DetailRow row{depth, std::move(key), {}};
  switch (element.type()) {
    case dom::element_type::OBJECT: {
      rows.push_back(std::move(row));
      // Held here: a range over a temporary result would outlive the object it walks.
      const dom::object object = element.get_object().value_unsafe();
      for (dom::key_value_pair field : object)
        addNested(field.value, std::string(field.key), depth + 1, rows);
      return;
    }
    case dom::element_type::ARRAY: {
      rows.push_back(std::move(row));
      size_t index = 0;
      const dom::array array = element.get_array().value_unsafe();
      for (dom::element item : array)
        addNested(item, std::to_string(index++), depth + 1, rows);
      return;
    }
    case dom::element_type::STRING:
      row.value = std::string(element.get_string().value_unsafe());
      break;
    default:
      // Numbers as the tool wrote them, true, false and null: simdjson prints them exactly.
      row.value = simdjson::to_string(element);
      break;
  }
  rows.push_back(std::move(row));
}

}  // namespace

std::vector<DetailRow> entryDetails(const EntryList& entries, size_t entry) {
  std::vector<DetailRow> rows;
  if (!entries.isRecord(entry)) return rows;
  dom::parser parser;
  for (int k = 0; k < kEntryKeyCount; ++k) {
    const auto key = static_cast<EntryKey>(k);
    const FieldValue value = entries.value(entry, key);
    if (!value.present()) continue;
    const std::string name(entryKeyName(key));
    if (value.kind() == ValueKind::other) {
      // The decoder kept the object's JSON text; it parsed once, so it parses again.
      dom::element element;
      if (parser.parse(value.text()).get(element) == simdjson::SUCCESS) {
        addNested(element, name, 0, rows);
        continue;
      }
    }
    rows.push_back({0, name, value.plainText()});
  }
  return rows;
}

std::string detailText(const std::vector<DetailRow>& rows) {
  std::string text;
  for (const DetailRow& row : rows) {
    text.append(static_cast<size_t>(row.depth) * 2, ' ');
    text += row.key;
    text += ':';
    if (!row.value.empty()) {
      text += ' ';
      text += row.value;
    }
    text += '\n';
  }
  return text;
}

}  // namespace kavor
