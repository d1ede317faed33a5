#pragma once
// The comma-separated form of fetched entries, which the main window shows in place of the styled
// log and kavor-cli prints: a header row for the system's column layout, then one row per element
// that the show switches let through. Texts are quoted; numbers and "source" are written bare.
// The tool's timestamp fills three columns (date, time, zone offset); only the message and the
// two image paths have their quotes doubled, and the message is kept to 255 characters on one line.

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "engine/core/entry_list.h"
#include "engine/core/field_table.h"
#include "engine/core/user_characters.h"
#include "engine/query/show_switches.h"

namespace kavor {

// Writes the CSV text a row at a time, so that a caller can send it out in pieces. Reads the
// entries without changing them; one writer serves one thread.
class CsvWriter {
 public:
  CsvWriter(const EntryList& entries, int osVersion, ShowSwitches switches);

  // The header row of the layout, its line feed included.
  void appendHeader(std::string& out) const;
  // The rows of elements [from, to), leaving out those whose event type the show switches hide.
  // An element that is not a record gives a row of empty fields.
  void appendRows(std::string& out, size_t from, size_t to);

 private:
  void appendRow(std::string& out, size_t index);
  void appendTextField(std::string& out, EntryKey key, const FieldValue& value);
  void appendNumberField(std::string& out, const FieldValue& value);
  void appendTimestamp(std::string& out, std::string_view text);
  void appendMessage(std::string& out, std::string_view text);
  void appendImagePath(std::string& out, std::string_view text);
  bool hasCharacters(std::string_view text, size_t n);

  const EntryList& entries_;
  ShowSwitches switches_;
  std::vector<Field> columns_;  // the field table without "formatString", never exported
  UserCharacters characters_;
  std::string scratch_;
};

// The whole CSV text, or none when there are no entries: the conversion then changes nothing.
std::optional<std::string> convertToCsv(const EntryList& entries, int osVersion,
                                        ShowSwitches switches);

}  // namespace kavor
