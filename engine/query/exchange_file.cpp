#include "engine/query/exchange_file.h"

#include <array>
#include <unordered_set>
#include <utility>

#include "engine/query/settings_texts.h"
#include "platform/file_bytes.h"

namespace kavor {

namespace {

// Far beyond any real lists file; a larger one is not read into memory.
constexpr uint64_t kMaxExchangeFileBytes = uint64_t{16} << 20;

struct Slot {
  std::string_view key;
  NamedList PrefsLists::*list;
};
constexpr std::array<Slot, 3> kSlots = {{
    {kSpecPredListKey, &PrefsLists::predicates},
    {kSpecStyleListKey, &PrefsLists::styles},
    {kSpecFiltListKey, &PrefsLists::filters},
}};

std::string inQuotes(std::string_view text) {
  std::string quoted;
  quoted.reserve(text.size() + 2);
  quoted.append(1, '"').append(text).append(1, '"');
  return quoted;
}

Error badContent(std::string text) {
  return Error{ErrorKind::parse, std::move(text)};
}

Expected<NamedList> listFrom(const PlistValue& value, std::string_view key) {
  const PlistArray* array = value.get<PlistArray>();
  if (!array) return badContent(inQuotes(key) + " is not a list of entries");
  NamedList list;
  list.reserve(array->size());
  for (size_t i = 0; i < array->size(); ++i) {
    const std::string where = "entry " + std::to_string(i + 1) + " of " + inQuotes(key);
    const PlistArray* pair = (*array)[i].get<PlistArray>();
    if (!pair || pair->size() != 2 || !(*pair)[0].is<std::string>() ||
        !(*pair)[1].is<std::string>())
      return badContent(where + " is not a name and a text");
    const std::string& name = *(*pair)[0].get<std::string>();
    const std::string& text = *(*pair)[1].get<std::string>();
    // A row with no name could not be told apart in any box, nor made in the preferences window.
    if (name.empty()) return badContent(where + " has no name");
    // Only a binary file's UTF-16 text carries one; the settings file would keep what comes
    // before it.
    if (name.find('\0') != std::string::npos || text.find('\0') != std::string::npos)
      return badContent(where + " holds a NUL character, which the settings cannot keep");
    list.push_back(ListEntry{name, text});
  }
  return list;
}

void merge(NamedList& into, const NamedList& from) {
  std::unordered_set<std::string> names;
  for (const ListEntry& e : into)
    names.insert(e.name);
  for (const ListEntry& e : from)
    if (names.insert(e.name).second) into.push_back(e);
}

}  // namespace

std::string exchangeFileBytes(const PrefsLists& lists) {
  PlistDict dict;
  for (const Slot& slot : kSlots)
    dict.emplace_back(std::string(slot.key), namedListToPlist(lists.*slot.list));
  return writeXmlPlist(PlistValue(std::move(dict)));
}

Status writeExchangeFile(const std::filesystem::path& file, const PrefsLists& lists) {
  return writeFileInPlace(file, exchangeFileBytes(lists));
}

Expected<std::optional<PrefsLists>> importedLists(std::string_view bytes, const PrefsLists& current,
                                                  ImportMode mode) {
  const auto parsed = parsePlist(bytes);
  if (!parsed) return badContent("it is not a property list");
  const PlistDict* dict = parsed->get<PlistDict>();
  if (!dict) return badContent("it holds no dictionary of lists");
  if (dict->empty()) return std::optional<PrefsLists>();

  PrefsLists result = current;
  for (const Slot& slot : kSlots) {
    const PlistValue* value = parsed->find(slot.key);
    if (!value) return badContent("it has no " + inQuotes(slot.key));
    auto list = listFrom(*value, slot.key);
    if (!list) return list.error();
    if (mode == ImportMode::replace)
      result.*slot.list = std::move(list).value();
    else
      merge(result.*slot.list, *list);
  }
  return std::optional<PrefsLists>(std::move(result));
}

Expected<std::optional<PrefsLists>> importedListsFromFile(const std::filesystem::path& file,
                                                          const PrefsLists& current,
                                                          ImportMode mode) {
  const std::string prefix = "Couldn't import " + inQuotes(file.string()) + ": ";
  const auto bytes = readFileBytes(file, kMaxExchangeFileBytes);
  if (!bytes) {
    Error e = bytes.error();
    e.context = prefix + e.context;
    return e;
  }
  auto lists = importedLists(*bytes, current, mode);
  if (!lists) return badContent(prefix + lists.error().context);
  return lists;
}

}  // namespace kavor
