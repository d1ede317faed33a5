#include "tools/log/event_kinds.h"

#include <array>
#include <utility>

namespace kavor::standin {

namespace {

using Named = std::pair<std::string_view, int>;

constexpr std::array<Named, 5> kMessageTypes = {
    {{"default", 0}, {"info", 1}, {"debug", 2}, {"error", 16}, {"fault", 17}}};
constexpr std::array<Named, 5> kPrintedMessageTypes = {
    {{"Default", 0}, {"Info", 1}, {"Debug", 2}, {"Error", 16}, {"Fault", 17}}};
constexpr std::array<Named, 9> kEventTypes = {{
    {"logEvent", 1024},
    {"traceEvent", 768},
    {"activityCreateEvent", 513},
    {"activityTransitionEvent", 514},
    {"userActionEvent", 515},
    {"signpostEvent", 1536},
    {"stateEvent", 1280},
    {"timesyncEvent", 2048},
    {"lossEvent", 1792},
}};

template <size_t N>
std::optional<int> lookUp(const std::array<Named, N>& table, std::string_view name) {
  for (const auto& [n, number] : table)
    if (n == name) return number;
  return std::nullopt;
}

}  // namespace

std::optional<int> messageTypeNumber(std::string_view predicateName) {
  return lookUp(kMessageTypes, predicateName);
}

std::optional<int> messageTypeNumberOfEntry(std::string_view printedName) {
  return lookUp(kPrintedMessageTypes, printedName);
}

std::optional<int> eventTypeNumber(std::string_view name) {
  return lookUp(kEventTypes, name);
}

}  // namespace kavor::standin
