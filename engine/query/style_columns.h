#pragma once
// A style's items resolved against the running system's field table: the key each item shows,
// how its text is cut and its colour. The styled text and the table view make their pieces from
// the same columns, so a cell reads exactly as its piece of the line.

#include <string>
#include <string_view>
#include <vector>

#include "engine/core/entry_key.h"
#include "engine/core/entry_list.h"
#include "engine/core/field_table.h"
#include "engine/core/styled_text.h"
#include "engine/core/user_characters.h"
#include "engine/query/style_items.h"

namespace kavor {

struct StyleColumn {
  EntryKey key = EntryKey::timestamp;
  FieldKind kind = FieldKind::text;
  FieldCut cut = FieldCut::none;
  TextColour colour = TextColour::text;
};

std::vector<StyleColumn> styleColumns(std::string_view styleText, int osVersion);

// The text of one column for one entry, cut by its letters. It points into the entries or into
// scratch, and lives until either changes; chars is the calling thread's own.
std::string_view columnText(const EntryList& entries, size_t entry, const StyleColumn& column,
                            UserCharacters& chars, std::string& scratch);

}  // namespace kavor
