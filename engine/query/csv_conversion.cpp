#include "engine/query/csv_conversion.h"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace kavor {

namespace {

// The three header names that the tool's timestamp fills once split.
constexpr std::string_view kTimestampColumns = "datestamp,timestamp,timecorr";
// Closes one quoted column and opens the next, inside a field that is itself quoted.
constexpr std::string_view kColumnBreak = "\",\"";

// A timestamp this long is split: date and time at its spaces, the zone offset after the time.
constexpr size_t kSplitTimestampCharacters = 29;
constexpr size_t kTimeEndCharacters = 26;
// Shorter values are written as they are.
constexpr size_t kEscapedCharacters = 2;
// A message of more characters keeps its first 255.
constexpr size_t kLongMessageCharacters = 256;
constexpr size_t kKeptMessageCharacters = 255;

// Rows converted before the size of the whole text is guessed from them.
constexpr size_t kSampleRows = 1024;

bool contains(std::string_view text, char c) {
  return !text.empty() && std::memchr(text.data(), c, text.size()) != nullptr;
}

void appendDoubledQuotes(std::string& out, std::string_view text) {
  for (size_t quote; (quote = text.find('"')) != std::string_view::npos;) {
    out.append(text.data(), quote + 1);
    out += '"';
    text.remove_prefix(quote + 1);
  }
  out += text;
}

void appendSpacesAsColumnBreaks(std::string& out, std::string_view text) {
  for (size_t space; (space = text.find(' ')) != std::string_view::npos;) {
    out.append(text.data(), space);
    out += kColumnBreak;
    text.remove_prefix(space + 1);
  }
  out += text;
}

template <typename Integer>
void appendDecimal(std::string& out, Integer value) {
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  out.append(digits, end);
}

}  // namespace

CsvWriter::CsvWriter(const EntryList& entries, int osVersion, ShowSwitches switches)
    : entries_(entries), switches_(switches) {
  for (const Field& field : fieldTable(osVersion))
    if (field.key != EntryKey::formatString) columns_.push_back(field);
}

void CsvWriter::appendHeader(std::string& out) const {
  for (size_t c = 0; c < columns_.size(); ++c) {
    if (c > 0) out += ',';
    const EntryKey key = columns_[c].key;
    out += key == EntryKey::timestamp ? kTimestampColumns : entryKeyName(key);
  }
  out += '\n';
}

void CsvWriter::appendRows(std::string& out, size_t from, size_t to) {
  for (size_t i = from; i < to; ++i)
    appendRow(out, i);
}

void CsvWriter::appendRow(std::string& out, size_t index) {
  if (!switches_.shows(entries_.value(index, EntryKey::eventType))) return;
  for (size_t c = 0; c < columns_.size(); ++c) {
    if (c > 0) out += ',';
    const Field field = columns_[c];
    const FieldValue value = entries_.value(index, field.key);
    switch (field.kind) {
      case FieldKind::text:
        appendTextField(out, field.key, value);
        break;
      case FieldKind::number:
        appendNumberField(out, value);
        break;
      case FieldKind::null:
        if (value.present()) out += "null";
        break;
    }
  }
  out += '\n';
}

// Only a text value is written; any other value under a text key leaves the field empty.
void CsvWriter::appendTextField(std::string& out, EntryKey key, const FieldValue& value) {
  out += '"';
  if (value.kind() == ValueKind::text) {
    const std::string_view text = value.text();
    switch (key) {
      case EntryKey::timestamp:
        appendTimestamp(out, text);
        break;
      case EntryKey::eventMessage:
        appendMessage(out, text);
        break;
      case EntryKey::processImagePath:
      case EntryKey::senderImagePath:
        appendImagePath(out, text);
        break;
      default:
        out += text;
    }
  }
  out += '"';
}

// A number in decimal. Anything else under a number key is written as its plain text, quoted
// only when that text would otherwise break the row into more columns or lines.
void CsvWriter::appendNumberField(std::string& out, const FieldValue& value) {
  switch (value.kind()) {
    case ValueKind::absent:
      return;
    case ValueKind::integer:
      appendDecimal(out, value.integer());
      return;
    case ValueKind::unsignedInteger:
      appendDecimal(out, value.unsignedInteger());
      return;
    default:
      break;
  }
  scratch_.clear();
  value.appendPlainText(scratch_);
  if (scratch_.find_first_of(",\"\n\r") == std::string::npos) {
    out += scratch_;
    return;
  }
  out += '"';
  appendDoubledQuotes(out, scratch_);
  out += '"';
}

void CsvWriter::appendTimestamp(std::string& out, std::string_view text) {
  if (!hasCharacters(text, kSplitTimestampCharacters)) {
    out += text;
    return;
  }
  const size_t timeEnd = characters_.prefixBytes(text, kTimeEndCharacters);
  appendSpacesAsColumnBreaks(out, text.substr(0, timeEnd));
  out += kColumnBreak;
  appendSpacesAsColumnBreaks(out, text.substr(timeEnd));
}

// Quotes are doubled, then line feeds become spaces, then the message is cut, in that order, as
// users' exports expect; the cut can therefore fall between the two quotes of a pair.
void CsvWriter::appendMessage(std::string& out, std::string_view text) {
  const bool quote = contains(text, '"');
  const bool lineFeed = contains(text, '\n');
  // The usual message: nothing to replace, and too few bytes to reach the cut.
  if ((!quote && !lineFeed && text.size() < kLongMessageCharacters) ||
      !hasCharacters(text, kEscapedCharacters)) {
    out += text;
    return;
  }
  const size_t start = out.size();
  if (quote || lineFeed) {
    for (const char c : text) {
      if (c == '"')
        out += "\"\"";
      else
        out += c == '\n' ? ' ' : c;
    }
  } else {
    out += text;
  }
  const std::string_view written(out.data() + start, out.size() - start);
  if (written.size() < kLongMessageCharacters) return;
  const size_t kept = characters_.prefixBytes(written, kKeptMessageCharacters);
  // Something after the first 255 characters means there are 256 or more.
  if (kept != UserCharacters::npos && kept < written.size()) out.resize(start + kept);
}

void CsvWriter::appendImagePath(std::string& out, std::string_view text) {
  if (contains(text, '"') && hasCharacters(text, kEscapedCharacters))
    appendDoubledQuotes(out, text);
  else
    out += text;
}

// Every character takes at least one byte, so a short text is answered without counting.
bool CsvWriter::hasCharacters(std::string_view text, size_t n) {
  return text.size() >= n && characters_.prefixBytes(text, n) != UserCharacters::npos;
}

std::optional<std::string> convertToCsv(const EntryList& entries, int osVersion,
                                        ShowSwitches switches) {
  if (entries.empty()) return std::nullopt;
  CsvWriter writer(entries, osVersion, switches);
  std::string out;
  writer.appendHeader(out);
  const size_t headerSize = out.size();
  // The first rows tell roughly how long the whole text will be; reserving that (and a little
  // more) spares copying hundreds of megabytes as the text grows.
  const size_t sampled = std::min(entries.size(), kSampleRows);
  writer.appendRows(out, 0, sampled);
  const size_t rest = entries.size() - sampled;
  const size_t perRow = (out.size() - headerSize) / sampled + 1;
  out.reserve(out.size() + perRow * rest + perRow * rest / 16);
  writer.appendRows(out, sampled, entries.size());
  return out;
}

}  // namespace kavor
