#pragma once
// The three named lists of the main window: their factory contents and how a combo box over one
// of them gives the text a query or a style uses.

#include <string>
#include <string_view>

#include "engine/core/combo_box_model.h"
#include "platform/settings_store.h"

namespace kavor {

// What each list holds before the store is read: one entry, "none" with no text.
NamedList initialNamedList();

NamedList factoryPredicateList();
NamedList factoryFilterList();
// "starters" names field 16 only on systems that have it (13 or more).
NamedList factoryStyleList(int osVersion);
// The factory list stored under listKey ("specPredList", "specFiltList" or "specStyleList").
NamedList factoryList(std::string_view listKey, int osVersion);

// The rule selectedListText: a typed box (no row selected) gives its displayed text, a selected
// row gives that entry's text, and a row beyond the list gives the empty text.
std::string selectedListText(const ComboBoxModel& box, const NamedList& list);

}  // namespace kavor
