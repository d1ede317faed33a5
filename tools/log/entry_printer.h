#pragma once
// What "show" prints for its entries: the JSON array of "--style json" as the real tool writes it
// (pretty, "key" : value, "/" escaped, keys in varying order, "source" null, some entries with a
// nested backtrace), or the header and one line per entry of "--style default".

#include <cstdint>
#include <string>

#include "tools/log/log_entry.h"

namespace kavor::standin {

enum class PrintStyle { json, plain };

class EntryPrinter {
 public:
  explicit EntryPrinter(PrintStyle style) : style_(style) {}

  // Appends to out; the caller writes out in pieces as it grows.
  void begin(std::string& out);
  void add(std::string& out, const LogEntry& entry);
  void end(std::string& out);

 private:
  void addJson(std::string& out, const LogEntry& e);
  void addPlain(std::string& out, const LogEntry& e);
  void appendTimestamp(std::string& out, int64_t timeMicros);

  PrintStyle style_;
  size_t count_ = 0;
  // The local date, time and offset of the last second printed: entries come in bursts.
  int64_t cachedSecond_ = INT64_MIN;
  std::string cachedText_;  // "2020-05-01 09:41:07"
  std::string cachedZone_;  // "+0100"
};

}  // namespace kavor::standin
