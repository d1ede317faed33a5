#pragma once
// The main window's settings as the window holds them: the named lists with their combo boxes,
// the entry limit, and the values its query form and View menu start from and save. Initial
// values are those a window has before it reads the store.

#include <cstdint>
#include <string>

#include "engine/core/combo_box_model.h"
#include "engine/query/named_lists.h"
#include "engine/query/settings_texts.h"
#include "platform/settings_store.h"

namespace kavor {

struct MainSettings {
  // Set from the running system when the window loads; picks signposts and the style list.
  int osVersion = 11;

  NamedList specPredList = initialNamedList();
  NamedList specFiltList = initialNamedList();
  NamedList specStyleList = initialNamedList();
  ComboBoxModel comboPredicate;
  ComboBoxModel comboFilter;
  ComboBoxModel comboStyle;
  // What each box shows: the selected name, or the typed text.
  std::string thePredicateStr{kNoneName};
  std::string theFilterStr{kNoneName};
  std::string theStyleStr{kNoneName};

  int64_t theLogCap = kFactoryLogLimit;
  bool theReplaceOnImport = true;
  double theFontSize = kDefaultFontSize;

  // The query form: period length in units and the selected index into timeUnitsList.
  int64_t theTimePeriod = kFactoryTimePeriod;
  int64_t timeUnitIndex = 0;
  std::string theTimeSelStr{timeUnitsList[0]};

  // View menu switches. showActivities is never stored.
  bool limitEntries = true;
  bool showLogEntries = true;
  bool showSignposts = false;
  bool showActivities = false;
  bool fetchInfo = true;
  bool fetchSignposts = true;
  bool fetchDebug = false;
};

}  // namespace kavor
