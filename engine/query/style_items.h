#pragma once
// The style language: items such as "0hr 2g 6b 9b 4r 10", each a field number with letters that
// cut and colour that field's text.

#include <cstdint>
#include <string_view>
#include <vector>

#include "engine/core/styled_text.h"

namespace kavor {

enum class FieldCut : uint8_t {
  none,
  timeOfDay,    // h, field 0: characters 11 to 25 of the timestamp
  dateAndTime,  // d, field 0: its first 26 characters, without the zone offset
  first21,      // t: the first 21 characters of a text of 21 or more
  dropLast20,   // T: a text of 21 or more without its last 20 characters
  fileName,     // f: after the last "/"
};

struct StyleItem {
  int field = 0;
  FieldCut cut = FieldCut::none;
  TextColour colour = TextColour::text;
  bool operator==(const StyleItem&) const = default;
};

// Every run of spaces separates items, so a leading or trailing space gives an empty item (field
// 0, no letters). Numbers are read leniently and clamped to 0..highestField; letters count
// wherever they stand in the item; nothing is ever rejected.
std::vector<StyleItem> parseStyleText(std::string_view styleText, int highestField);

}  // namespace kavor
