#include "bench/window/case_report.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace kavor::bench {

void say(std::string_view key, std::string_view value) {
  std::printf("%.*s %.*s\n", static_cast<int>(key.size()), key.data(),
              static_cast<int>(value.size()), value.data());
  std::fflush(stdout);
}

void say(std::string_view key, double value) {
  char text[64];
  std::snprintf(text, sizeof text, "%.17g", value);
  say(key, text);
}

CaseReport::CaseReport(std::string_view output) {
  while (!output.empty()) {
    const size_t end = std::min(output.find('\n'), output.size());
    const std::string_view line = output.substr(0, end);
    output.remove_prefix(std::min(end + 1, output.size()));
    const size_t space = line.find(' ');
    if (space == std::string_view::npos) continue;
    values_.emplace(std::string(line.substr(0, space)), std::string(line.substr(space + 1)));
  }
}

std::vector<std::string> CaseReport::all(const std::string& key) const {
  std::vector<std::string> found;
  const auto [from, to] = values_.equal_range(key);
  for (auto it = from; it != to; ++it)
    found.push_back(it->second);
  return found;
}

double CaseReport::number(const std::string& key) const {
  const auto it = values_.find(key);
  return it == values_.end() ? std::nan("") : std::strtod(it->second.c_str(), nullptr);
}

}  // namespace kavor::bench
