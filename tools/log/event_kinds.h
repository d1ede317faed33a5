#pragma once
// The numbers behind the names of message types and event types, as predicates may compare
// either: messageType == "error" and messageType == 16 select the same entries.

#include <optional>
#include <string_view>

namespace kavor::standin {

// "default" 0, "info" 1, "debug" 2, "error" 16, "fault" 17; names are matched as written in
// predicates (lower case), case-sensitively.
std::optional<int> messageTypeNumber(std::string_view predicateName);
// The number of the type an entry prints ("Default", "Info", ...), none for others.
std::optional<int> messageTypeNumberOfEntry(std::string_view printedName);

// "logEvent" 1024, "traceEvent" 768, "activityCreateEvent" 513, "activityTransitionEvent" 514,
// "userActionEvent" 515, "signpostEvent" 1536, "stateEvent" 1280, "timesyncEvent" 2048,
// "lossEvent" 1792; case-sensitive, the same spelling entries print.
std::optional<int> eventTypeNumber(std::string_view name);

}  // namespace kavor::standin
