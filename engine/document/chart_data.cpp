#include "engine/document/chart_data.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <numeric>
#include <unordered_map>
#include <utility>

#include "engine/core/date_format.h"

namespace kavor {

namespace {

constexpr std::string_view kTimestampPattern = "yyyy-MM-dd HH:mm:ss.SSSSSSZZZZZ";
constexpr std::string_view kLabelPattern = "yyyy-MM-dd\nHH:mm:ss.SSS";
// Shorter timestamps count as missing, however the formatter would read them.
constexpr size_t kShortestTimestamp = 21;

// Characters as the platform's strings count them: UTF-16 code units.
size_t utf16Length(std::string_view text) {
  size_t units = 0;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte & 0xC0) != 0x80) units += byte >= 0xF0 ? 2 : 1;
  }
  return units;
}

// Days from 1970-01-01 to a date of the proleptic Gregorian calendar (H. Hinnant's algorithm).
constexpr int64_t daysFromCivil(int64_t year, int month, int day) {
  year -= month <= 2;
  const int64_t era = (year >= 0 ? year : year - 399) / 400;
  const int64_t yearOfEra = year - era * 400;
  const int64_t dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
  const int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * 146097 + dayOfEra - 719468;
}

constexpr bool isLeapYear(int year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

constexpr int daysInMonth(int year, int month) {
  constexpr std::array<int, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month == 2 && isLeapYear(year) ? 29 : kDays[month - 1];
}

// The value of the decimal digits text[from, from + count), or -1 if one is not a digit.
int digitsAt(std::string_view text, size_t from, size_t count) {
  int value = 0;
  for (size_t i = from; i < from + count; ++i) {
    const unsigned digit = static_cast<unsigned char>(text[i]) - '0';
    if (digit > 9) return -1;
    value = value * 10 + static_cast<int>(digit);
  }
  return value;
}

// Entry timestamps: the log tool's shape by hand, anything else by the formatter, made only if
// such a text turns up.
class TimestampReader {
 public:
  std::optional<double> read(std::string_view text) {
    if (text.size() < kShortestTimestamp) return std::nullopt;
    if (const auto time = parseToolTimestamp(text)) return time;
    if (utf16Length(text) < kShortestTimestamp) return std::nullopt;
    if (!formatter_) formatter_.emplace(kTimestampPattern);
    return formatter_->parse(text);
  }

 private:
  std::optional<DateFormatter> formatter_;
};

// The names of one collection. The list holds each distinct subsystem text once, so a text is
// first looked up by where it lies, and by its characters only when that is new.
class NameTable {
 public:
  explicit NameTable(std::vector<std::string>& names) : names_(names) {}

  uint32_t indexOf(std::string_view name) {
    Slot& slot = slots_[(reinterpret_cast<uintptr_t>(name.data()) >> 3) % slots_.size()];
    if (slot.data == name.data() && slot.size == name.size() && slot.data) return slot.index;
    const auto [found, added] = byText_.try_emplace(name, static_cast<uint32_t>(names_.size()));
    if (added) names_.emplace_back(name);
    slot = {name.data(), name.size(), found->second};
    return found->second;
  }

 private:
  struct Slot {
    const char* data = nullptr;
    size_t size = 0;
    uint32_t index = 0;
  };
  std::vector<std::string>& names_;
  std::unordered_map<std::string_view, uint32_t> byText_;  // views into the list or constants
  std::array<Slot, 256> slots_{};
};

std::string_view entryName(const EntryList& entries, size_t index) {
  const FieldValue processID = entries.value(index, EntryKey::processID);
  if (processID.kind() == ValueKind::integer && processID.integer() == 0) return kKernelName;
  const FieldValue subsystem = entries.value(index, EntryKey::subsystem);
  if (subsystem.kind() == ValueKind::text && !subsystem.text().empty()) return subsystem.text();
  return kNoSubsystemName;
}

}  // namespace

std::optional<double> parseToolTimestamp(std::string_view text) {
  // 0123456789012345678901234567890
  // 2020-05-01 09:41:07.123456+0100
  if (text.size() != 31) return std::nullopt;
  if (text[4] != '-' || text[7] != '-' || text[10] != ' ' || text[13] != ':' || text[16] != ':' ||
      text[19] != '.' || (text[26] != '+' && text[26] != '-'))
    return std::nullopt;
  const int year = digitsAt(text, 0, 4);
  const int month = digitsAt(text, 5, 2);
  const int day = digitsAt(text, 8, 2);
  const int hour = digitsAt(text, 11, 2);
  const int minute = digitsAt(text, 14, 2);
  const int second = digitsAt(text, 17, 2);
  const int micros = digitsAt(text, 20, 6);
  const int offsetHours = digitsAt(text, 27, 2);
  const int offsetMinutes = digitsAt(text, 29, 2);
  // Before 1600 the formatter's calendar may be the Julian one; those go to the formatter.
  if (year < 1600 || month < 1 || month > 12 || day < 1 || day > daysInMonth(year, month) ||
      hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59 ||
      micros < 0 || offsetHours < 0 || offsetHours > 23 || offsetMinutes < 0 || offsetMinutes > 59)
    return std::nullopt;
  const int64_t offset = (offsetHours * 60 + offsetMinutes) * int64_t{60000};
  const int64_t millis =
      ((daysFromCivil(year, month, day) * 24 + hour) * 60 + minute) * int64_t{60000} +
      second * int64_t{1000} + micros / 1000 - (text[26] == '+' ? offset : -offset);
  // The same arithmetic as the formatter's, so that both give the same double.
  return static_cast<double>(millis) / 1000.0 - kAbsoluteTimeSince1970;
}

uint64_t beginChartCollection(Document& document) {
  return ++document.chartCollection;
}

ChartEntries collectChartEntries(const EntryList& entries, double startDate, uint64_t collection) {
  ChartEntries out;
  out.collection = collection;
  out.times.resize(entries.size());
  out.names.resize(entries.size());
  TimestampReader timestamps;
  NameTable names(out.distinctNames);
  for (size_t i = 0; i < entries.size(); ++i) {
    if (!entries.isRecord(i)) {
      out.times[i] = 0;
      out.names[i] = names.indexOf(kNoSubsystemName);
      continue;
    }
    double time = 0;
    const FieldValue timestamp = entries.value(i, EntryKey::timestamp);
    if (timestamp.kind() == ValueKind::text) {
      if (const auto date = timestamps.read(timestamp.text())) time = *date - startDate;
    }
    out.times[i] = time > 0 ? time : 0;
    out.names[i] = names.indexOf(entryName(entries, i));
  }
  return out;
}

std::optional<std::pair<double, double>> entryTimeSpan(const EntryList& entries) {
  std::optional<std::pair<double, double>> span;
  TimestampReader timestamps;
  for (size_t i = 0; i < entries.size(); ++i) {
    const FieldValue timestamp = entries.value(i, EntryKey::timestamp);
    if (timestamp.kind() != ValueKind::text) continue;
    const auto time = timestamps.read(timestamp.text());
    if (!time) continue;
    if (!span) span.emplace(*time, *time);
    span->first = std::min(span->first, *time);
    span->second = std::max(span->second, *time);
  }
  return span;
}

bool indexSubsystems(Document& document, ChartEntries&& entries, std::string_view timeZone) {
  if (entries.collection != document.chartCollection) return false;
  document.logTimes = std::move(entries.times);
  document.logSubsys = std::move(entries.names);
  document.logSSystTypes = std::move(entries.distinctNames);

  // std::string compares as unsigned bytes, which for UTF-8 is code point order.
  const std::vector<std::string>& types = document.logSSystTypes;
  std::vector<uint32_t> order(types.size());
  std::iota(order.begin(), order.end(), 0u);
  std::sort(order.begin(), order.end(),
            [&](uint32_t a, uint32_t b) { return types[a] < types[b]; });
  std::vector<int64_t> rank(types.size());
  document.popSSystTypes.clear();
  document.popSSystTypes.reserve(types.size());
  for (size_t k = 0; k < order.size(); ++k) {
    rank[order[k]] = static_cast<int64_t>(k);
    document.popSSystTypes.push_back(types[order[k]]);
  }
  // A new array rather than the old one resized: a larger fetch's room would stay otherwise.
  std::vector<int64_t> indexes(document.logSubsys.size());
  for (size_t i = 0; i < indexes.size(); ++i)
    indexes[i] = rank[document.logSubsys[i]];
  document.logSSystIndexes = std::move(indexes);

  binChartData(document, 0, timeZone);
  return true;
}

void binChartData(Document& document, int64_t selection, std::string_view timeZone) {
  const size_t bins = document.theNoBins > 0 ? static_cast<size_t>(document.theNoBins) : 0;
  document.logBarValue.assign(bins, 0);
  document.logBarLabel.assign(bins, "0");
  document.logBarDate.assign(bins, document.startDate);
  document.logSSystCount = 0;
  if (bins == 0) return;

  const double width =
      std::fabs(document.endDate - document.startDate) / static_cast<double>(document.theNoBins);
  const double binCount = static_cast<double>(bins);
  // Truncation toward zero, clamped to the bins; NaN fails both tests and lands in bin 0.
  const auto binOf = [&](double time) -> size_t {
    const double q = time / width;
    if (q >= binCount) return bins - 1;
    return q > 0 ? static_cast<size_t>(q) : 0;
  };
  std::vector<int64_t>& counts = document.logBarValue;
  const std::vector<double>& times = document.logTimes;
  if (selection == 0) {
    for (const double time : times)
      ++counts[binOf(time)];
  } else if (selection > 0) {
    const int64_t wanted = selection - 1;
    const size_t n = std::min(times.size(), document.logSSystIndexes.size());
    for (size_t i = 0; i < n; ++i)
      if (document.logSSystIndexes[i] == wanted) ++counts[binOf(times[i])];
  }
  for (const int64_t count : counts)
    document.logSSystCount += count;

  const DateFormatter formatter(kLabelPattern, timeZone);
  const double step = std::isfinite(width) ? width : 0;
  double start = document.startDate;
  for (size_t i = 0; i < bins; ++i) {
    std::string label = formatter.format(start);
    label += '\n';
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, counts[i]).ptr;
    label.append(digits, end);
    document.logBarLabel[i] = std::move(label);
    document.logBarDate[i] = start;
    start += step;
  }
}

}  // namespace kavor
