#include "engine/query/view_menu.h"

#include "engine/shell/menu_texts.h"

namespace kavor {

namespace {

// Before 10.13 there are no signposts to show or fetch: the item goes, whatever the switch says.
ViewMenuItemState signpostItem(std::string_view title, bool on, int osVersion) {
  if (osVersion < kFirstSignpostOsVersion) return {title, false, true, false};
  return {title, on, false, true};
}

}  // namespace

std::array<ViewMenuItemState, 7> viewMenuStates(const MainSettings& settings) {
  return {{
      {kLimitEntriesItem, settings.limitEntries},
      {kShowLogEntriesItem, settings.showLogEntries},
      signpostItem(kShowSignpostsItem, settings.showSignposts, settings.osVersion),
      {kShowActivitiesItem, settings.showActivities},
      {kFetchInfoItem, settings.fetchInfo},
      signpostItem(kFetchSignpostsItem, settings.fetchSignposts, settings.osVersion),
      {kFetchDebugItem, settings.fetchDebug},
  }};
}

}  // namespace kavor
