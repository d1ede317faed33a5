#pragma once
// The preferences window without the window: the three named lists being edited with their
// selections, the replace-on-import switch and the entry limit. The window hands in what its
// fields show with each action and shows the group the editor returns. Entries are addressed by
// position; position 0 is never edited or removed. Nothing is stored while the window is open
// except by the reset; storeOnClose stores every edit at once. Main thread only.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/expected.h"
#include "platform/settings_store.h"

namespace kavor {

enum class PrefsList { predicates, styles, filters };
inline constexpr std::array<PrefsList, 3> kPrefsLists = {PrefsList::predicates, PrefsList::styles,
                                                         PrefsList::filters};

// A list's name field and text field.
struct PrefsFields {
  std::string name;
  std::string text;
  bool operator==(const PrefsFields&) const = default;
};

// What one list's group of controls shows.
struct PrefsGroup {
  // Every entry's name in list order, then "New…", which stands for a new entry.
  std::vector<std::string> popupItems;
  // The selected item; -1 for none (an empty list).
  int64_t selectedItem = 0;
  PrefsFields fields;
};

// The limit field's text as the number formatter reads it: optional white space around a
// decimal number with an optional sign and fraction; its integer part, or none for any other
// text.
std::optional<int64_t> logLimitFromText(std::string_view text);

class PrefsEditor {
 public:
  // What the window reads when it loads: the switch and the limit as stored, then each list
  // (the factory one in place of a corrupt one) with the main window's selection, position 0
  // when the list has no such entry. The fields stay empty. The store must outlive the editor.
  PrefsEditor(SettingsStore& store, int osVersion);

  PrefsGroup group(PrefsList which) const;
  const NamedList& list(PrefsList which) const { return state(which).list; }
  // thePredicateSel and its twins: the selected position, n for "New…".
  int64_t selection(PrefsList which) const { return state(which).selection; }
  // thePredicateStr and its twins.
  const std::string& selectedName(PrefsList which) const { return state(which).name; }

  // Rebuilds the group from the list, moving a selection past the end to the last entry.
  void refreshListPopup(PrefsList which);
  // The user chose an item: an entry after the first shows its name and text, "New…" shows
  // "untitled" and the list's placeholder text, position 0 leaves the fields as they are.
  void choose(PrefsList which, int64_t position, PrefsFields shown);
  // The buttons, with what the fields show; each does nothing while either field is empty.
  // Add appends and keeps the selection, so adding from "New…" selects the new entry. Change and
  // remove act on the selected position, never on 0 or "New…".
  void add(PrefsList which, PrefsFields shown);
  void change(PrefsList which, PrefsFields shown);
  void remove(PrefsList which, PrefsFields shown);

  bool replaceOnImport() const { return replaceOnImport_; }
  int64_t logCap() const { return logCap_; }
  // The limit field's text: theLogCap in decimal.
  std::string logLimitText() const { return std::to_string(logCap_); }

  // The reset button: the factory settings and lists, signpost switches only from 13 on, are
  // written; "Customs-Changed" is posted; the groups are refreshed keeping their selections;
  // the switch is on and the limit 999. The result is the write's outcome.
  [[nodiscard]] Status resetAllPrefs();
  // When the window goes away: the three lists, the switch as the check box shows it, and the
  // limit when its text reads as a number, written all or nothing; then "Customs-Changed". A
  // list that was corrupt in the store and not edited stays as it was stored.
  [[nodiscard]] Status storeOnClose(bool replaceOnImportChecked, std::string_view limitText);

 private:
  struct ListState {
    NamedList list;
    int64_t selection = 0;
    std::string name;
    PrefsFields fields;
    // The store held something unreadable under the key: it is kept until the list is edited.
    bool keepStored = false;
  };
  ListState& state(PrefsList which) { return lists_[static_cast<size_t>(which)]; }
  const ListState& state(PrefsList which) const { return lists_[static_cast<size_t>(which)]; }
  bool editable(const ListState& s) const;
  // Takes what the fields show, as every button does first; the list's state when both hold
  // text, else none.
  ListState* readFields(PrefsList which, PrefsFields shown);
  // After an entry was added, changed or removed.
  void edited(PrefsList which);

  SettingsStore& store_;
  int osVersion_;
  std::array<ListState, 3> lists_;
  bool replaceOnImport_ = true;
  int64_t logCap_ = 0;
};

}  // namespace kavor
