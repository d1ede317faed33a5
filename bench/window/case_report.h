#pragma once
// A case runs in a child process of the bench and tells the parent what it measured: one
// "key value" line each on standard output (a value has no line break; a key no space).

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kavor::bench {

void say(std::string_view key, std::string_view value);
void say(std::string_view key, double value);

class CaseReport {
 public:
  explicit CaseReport(std::string_view output);
  // The values said under key, in order.
  std::vector<std::string> all(const std::string& key) const;
  // The first value under key read as a number; NaN when there is none.
  double number(const std::string& key) const;

 private:
  std::multimap<std::string, std::string, std::less<>> values_;
};

}  // namespace kavor::bench
