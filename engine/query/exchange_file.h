#pragma once
// The file the three named lists are exported to and imported from: a property list whose top
// dictionary holds "specPredList", "specStyleList" and "specFiltList", each an array of
// [name, text] arrays. Written in the XML form; read in any form.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/expected.h"
#include "platform/settings_store.h"

namespace kavor {

// The three lists in the order the file holds them.
struct PrefsLists {
  NamedList predicates;
  NamedList styles;
  NamedList filters;
  bool operator==(const PrefsLists&) const = default;
};

// Replace: each list becomes the file's. Merge: the file's entries whose name the list does not
// hold yet (counting those appended by this import) are appended; existing entries never change.
enum class ImportMode { replace, merge };

// The file's bytes: the XML property list of the three keys in their order.
std::string exchangeFileBytes(const PrefsLists& lists);

// Writes the file in place, not atomically: a failure may leave part of it. On failure the
// alert's text is kCouldntSaveExported; the error tells why.
[[nodiscard]] Status writeExchangeFile(const std::filesystem::path& file, const PrefsLists& lists);

// The lists after importing the file's bytes into current, computed whole before anything is
// stored; none for an empty dictionary, which changes nothing. A file that is no dictionary,
// lacks a key, or holds anything but arrays of [name, text] with a name gives an error whose
// message says which, and nothing is imported.
Expected<std::optional<PrefsLists>> importedLists(std::string_view bytes, const PrefsLists& current,
                                                  ImportMode mode);

// importedLists over the file; the error's message names the file and is the alert's text.
Expected<std::optional<PrefsLists>> importedListsFromFile(const std::filesystem::path& file,
                                                          const PrefsLists& current,
                                                          ImportMode mode);

}  // namespace kavor
