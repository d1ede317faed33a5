#include "engine/query/prefs_editor.h"

#include <utility>

#include "engine/query/main_settings_store.h"
#include "engine/query/named_lists.h"
#include "engine/query/prefs_texts.h"
#include "engine/query/settings_commit.h"
#include "engine/query/settings_texts.h"
#include "platform/number_text.h"

namespace kavor {

namespace {

// What tells the three lists apart, in kPrefsLists order.
struct ListTraits {
  std::string_view listKey;
  std::string_view selectionKey;  // the main window's
  std::string_view newText;
};

constexpr std::array<ListTraits, 3> kTraits = {{
    {kSpecPredListKey, kPopupPredicateKey, kNewPredicateText},
    {kSpecStyleListKey, kPopupStyleKey, kNewStyleText},
    {kSpecFiltListKey, kPopupFilterKey, kNewFilterText},
}};

const ListTraits& traits(PrefsList which) {
  return kTraits[static_cast<size_t>(which)];
}

int64_t sizeOf(const NamedList& list) {
  return static_cast<int64_t>(list.size());
}

bool isSpace(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}

}  // namespace

std::optional<int64_t> logLimitFromText(std::string_view text) {
  while (!text.empty() && isSpace(text.front()))
    text.remove_prefix(1);
  while (!text.empty() && isSpace(text.back()))
    text.remove_suffix(1);
  size_t i = 0;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
  bool digits = false;
  bool point = false;
  for (; i < text.size(); ++i) {
    if (text[i] >= '0' && text[i] <= '9') {
      digits = true;
    } else if (text[i] == '.' && !point) {
      point = true;
    } else {
      return std::nullopt;
    }
  }
  if (!digits) return std::nullopt;
  return integerValueOf(text);
}

PrefsEditor::PrefsEditor(SettingsStore& store, int osVersion)
    : store_(store), osVersion_(osVersion) {
  replaceOnImport_ = store_.boolValue(kReplaceOnImportKey);
  logCap_ = store_.integerValue(kLogLimitKey);
  for (PrefsList which : kPrefsLists) {
    ListState& s = state(which);
    s.list = initialNamedList();
    NamedListRead read = store_.namedList(traits(which).listKey);
    if (read.status == NamedListRead::Status::ok) {
      s.list = std::move(read.list);
    } else if (read.status == NamedListRead::Status::corrupt) {
      s.list = factoryList(traits(which).listKey, osVersion_);
      s.keepStored = true;
    }
    // The main window stores -1 for a typed box, which is no position here.
    const int64_t stored = store_.integerValue(traits(which).selectionKey);
    s.selection = stored >= 0 && stored < sizeOf(s.list) ? stored : 0;
    s.name = s.selection < sizeOf(s.list) ? s.list[static_cast<size_t>(s.selection)].name : "";
  }
}

PrefsGroup PrefsEditor::group(PrefsList which) const {
  const ListState& s = state(which);
  PrefsGroup group;
  for (const ListEntry& e : s.list)
    group.popupItems.push_back(e.name);
  group.popupItems.emplace_back(kNewEntryItem);
  group.selectedItem = s.selection;
  group.fields = s.fields;
  return group;
}

void PrefsEditor::refreshListPopup(PrefsList which) {
  ListState& s = state(which);
  const int64_t n = sizeOf(s.list);
  // An empty list (stored by other means) leaves only "New…" and empty fields.
  if (s.selection >= n) s.selection = n - 1;
  if (s.selection >= 0) {
    const ListEntry& e = s.list[static_cast<size_t>(s.selection)];
    s.name = e.name;
    s.fields = {e.name, e.text};
  } else {
    s.name.clear();
    s.fields = {};
  }
}

void PrefsEditor::choose(PrefsList which, int64_t position, PrefsFields shown) {
  ListState& s = state(which);
  s.fields = std::move(shown);
  const int64_t n = sizeOf(s.list);
  if (position < 0 || position > n) return;  // no such item
  s.selection = position;
  if (position >= 1 && position < n) {
    const ListEntry& e = s.list[static_cast<size_t>(position)];
    s.name = e.name;
    s.fields = {e.name, e.text};
  } else if (position == n) {
    s.name = kUntitledName;
    s.fields = {std::string(kUntitledName), std::string(traits(which).newText)};
  }
}

bool PrefsEditor::editable(const ListState& s) const {
  return s.selection >= 1 && s.selection < sizeOf(s.list);
}

PrefsEditor::ListState* PrefsEditor::readFields(PrefsList which, PrefsFields shown) {
  ListState& s = state(which);
  s.fields = std::move(shown);
  s.name = s.fields.name;
  return s.fields.name.empty() || s.fields.text.empty() ? nullptr : &s;
}

void PrefsEditor::edited(PrefsList which) {
  state(which).keepStored = false;
  refreshListPopup(which);
}

void PrefsEditor::add(PrefsList which, PrefsFields shown) {
  if (ListState* s = readFields(which, std::move(shown))) {
    s->list.push_back(ListEntry{s->fields.name, s->fields.text});
    edited(which);
  }
}

void PrefsEditor::change(PrefsList which, PrefsFields shown) {
  if (ListState* s = readFields(which, std::move(shown)); s && editable(*s)) {
    s->list[static_cast<size_t>(s->selection)] = ListEntry{s->fields.name, s->fields.text};
    edited(which);
  }
}

void PrefsEditor::remove(PrefsList which, PrefsFields shown) {
  if (ListState* s = readFields(which, std::move(shown)); s && editable(*s)) {
    s->list.erase(s->list.begin() + s->selection);
    edited(which);
  }
}

Status PrefsEditor::resetAllPrefs() {
  Status written = storeFactorySettings(store_, osVersion_);
  for (PrefsList which : kPrefsLists) {
    state(which).list = factoryList(traits(which).listKey, osVersion_);
    state(which).keepStored = false;
  }
  store_.notifications().post(kCustomsChanged);
  for (PrefsList which : kPrefsLists)
    refreshListPopup(which);
  replaceOnImport_ = true;
  logCap_ = kFactoryLogLimit;
  return written;
}

Status PrefsEditor::storeOnClose(bool replaceOnImportChecked, std::string_view limitText) {
  PlistDict values;
  // The order the main window stores its lists in.
  for (PrefsList which : {PrefsList::predicates, PrefsList::filters, PrefsList::styles}) {
    if (state(which).keepStored) continue;
    values.emplace_back(std::string(traits(which).listKey), namedListToPlist(state(which).list));
  }
  replaceOnImport_ = replaceOnImportChecked;
  values.emplace_back(std::string(kReplaceOnImportKey), PlistValue(replaceOnImport_));
  if (const auto limit = logLimitFromText(limitText)) {
    logCap_ = *limit;
    values.emplace_back(std::string(kLogLimitKey), PlistValue(*limit));
  }
  Status written = writeAllOrNothing(store_, values);
  store_.notifications().post(kCustomsChanged);
  return written;
}

}  // namespace kavor
