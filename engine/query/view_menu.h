#pragma once
// The View menu items that mirror a main window's switches: which are ticked, and which a system
// without signposts hides. The menu is shared by every main window, so each window that becomes
// main, or changes a switch, writes its own states into it.

#include <array>
#include <string_view>

#include "engine/query/main_settings.h"

namespace kavor {

struct ViewMenuItemState {
  std::string_view title;
  bool checked = false;
  bool hidden = false;
  bool enabled = true;
};

std::array<ViewMenuItemState, 7> viewMenuStates(const MainSettings& settings);

}  // namespace kavor
