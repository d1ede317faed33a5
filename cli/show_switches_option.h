#pragma once
// The View menu's show switches as options, shared by the commands that show entries.

#include "cli/arguments.h"
#include "engine/query/show_switches.h"

namespace kavor::cli {

inline constexpr std::string_view kShowSignposts = "--show-signposts";
inline constexpr std::string_view kShowActivities = "--show-activities";
inline constexpr std::string_view kHideLogEntries = "--hide-log-entries";

inline constexpr OptionSpec kShowSignpostsOption = {
    kShowSignposts, {}, "show signpostEvent entries"};
inline constexpr OptionSpec kShowActivitiesOption = {
    kShowActivities, {}, "show activityCreateEvent entries"};
inline constexpr OptionSpec kHideLogEntriesOption = {kHideLogEntries, {}, "hide logEvent entries"};

// As a new window starts: log entries shown, signposts and activities hidden.
inline ShowSwitches showSwitchesFrom(const Arguments& args) {
  return ShowSwitches{.showLogEntries = !args.has(kHideLogEntries),
                      .showSignposts = args.has(kShowSignposts),
                      .showActivities = args.has(kShowActivities)};
}

}  // namespace kavor::cli
