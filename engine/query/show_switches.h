#pragma once
// The View menu's three show switches and the type test that both the styled log and the CSV
// apply with them to each entry's "eventType".

#include <string_view>

#include "engine/core/entry_list.h"

namespace kavor {

inline constexpr std::string_view kLogEventType = "logEvent";
inline constexpr std::string_view kSignpostEventType = "signpostEvent";
inline constexpr std::string_view kActivityCreateEventType = "activityCreateEvent";

struct ShowSwitches {
  bool showLogEntries = true;
  bool showSignposts = false;
  bool showActivities = false;

  // Only the three named types can be hidden: an entry without "eventType", or with any other
  // value, always passes.
  bool shows(const FieldValue& eventType) const {
    if (eventType.kind() != ValueKind::text) return true;
    const std::string_view type = eventType.text();
    if (type == kLogEventType) return showLogEntries;
    if (type == kSignpostEventType) return showSignposts;
    if (type == kActivityCreateEventType) return showActivities;
    return true;
  }
};

}  // namespace kavor
