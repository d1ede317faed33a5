#include "engine/query/style_items.h"

#include <algorithm>

#include "platform/number_text.h"

namespace kavor {

namespace {

StyleItem itemOf(std::string_view item, int highestField) {
  const auto has = [item](char letter) { return item.find(letter) != std::string_view::npos; };
  StyleItem s;
  s.field = static_cast<int>(std::clamp<int64_t>(integerValueOf(item), 0, highestField));
  if (s.field == 0) {
    if (has('h'))
      s.cut = FieldCut::timeOfDay;
    else if (has('d'))
      s.cut = FieldCut::dateAndTime;
  } else if (has('t')) {
    s.cut = FieldCut::first21;
  } else if (has('T')) {
    s.cut = FieldCut::dropLast20;
  } else if (has('f')) {
    s.cut = FieldCut::fileName;
  }
  if (has('r'))
    s.colour = TextColour::red;
  else if (has('g'))
    s.colour = TextColour::green;
  else if (has('b'))
    s.colour = TextColour::blue;
  return s;
}

}  // namespace

std::vector<StyleItem> parseStyleText(std::string_view styleText, int highestField) {
  std::vector<StyleItem> items;
  size_t start = 0;
  for (;;) {
    const size_t space = styleText.find(' ', start);
    items.push_back(itemOf(styleText.substr(start, space - start), highestField));
    if (space == std::string_view::npos) break;
    start = styleText.find_first_not_of(' ', space);
    // Spaces to the end: one empty item after them.
    if (start == std::string_view::npos) start = styleText.size();
  }
  return items;
}

}  // namespace kavor
