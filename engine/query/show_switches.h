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
    return eventType.kind() != ValueKind::text || showsType(eventType.text());
  }
  bool showsType(std::string_view type) const {
    if (type == kLogEventType) return showLogEntries;
    if (type == kSignpostEventType) return showSignposts;
    if (type == kActivityCreateEventType) return showActivities;
    return true;
  }
  // How many of the list's entries pass, from its tally of types rather than a walk.
  size_t countShown(const EntryList& entries) const {
    size_t shown = entries.size();
    for (const TextTally& type : entries.eventTypeTally())
      if (!showsType(type.text)) shown -= type.count;
    return shown;
  }
};

}  // namespace kavor
