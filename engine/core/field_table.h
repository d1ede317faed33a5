#pragma once
// The numbering of log entry fields that styles and the field list use. Which keys are numbered
// depends on the system: older log tools print fewer keys, and 10.13 prints "source" as field 21.

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "engine/core/entry_key.h"

namespace kavor {

// How a field's value becomes text: as it is, by its number's description, or the word "null".
enum class FieldKind : uint8_t { text, number, null };

struct Field {
  EntryKey key;
  FieldKind kind;
  bool operator==(const Field&) const = default;
};

// The field key and kind table for osVersion, indexed by field number: 26 fields for 14 or
// more, 22 for exactly 13, 16 below 13.
std::span<const Field> fieldTable(int osVersion);

// The highest field number of osVersion's table: 25, 21 or 15.
int highestFieldNumber(int osVersion);

// One line of the field list: "1 machTimestamp no.", "10 eventMessage", "25 source (null)".
std::string fieldListLine(int number, const Field& field);

// The lines of the field list for osVersion, one per field in field-number order.
std::vector<std::string> fieldListLines(int osVersion);

// Points the Log Fields window grows by at each appearance, so that the longer lists of 10.13
// (100) and 10.14 (170) fit; 0 for every other version.
int fieldWindowGrowth(int osVersion);

}  // namespace kavor
