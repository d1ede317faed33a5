#pragma once
// Every field of one entry as rows of key and value, for the detail pane: values exact (IDs as
// the tool printed them, timestamps whole), and nested objects and arrays ("source",
// "backtrace") opened into indented rows under their key.

#include <cstddef>
#include <string>
#include <vector>

#include "engine/core/entry_list.h"

namespace kavor {

struct DetailRow {
  int depth = 0;  // 0 for the entry's own fields, one more per level of nesting
  std::string key;
  std::string value;  // empty for an object or array, whose members follow one level deeper
  bool operator==(const DetailRow&) const = default;
};

// The entry's fields, in the same order for every entry; fields it lacks are left out.
std::vector<DetailRow> entryDetails(const EntryList& entries, size_t entry);

// The rows as text, one "key: value" line each, indented two spaces per level.
std::string detailText(const std::vector<DetailRow>& rows);

}  // namespace kavor
