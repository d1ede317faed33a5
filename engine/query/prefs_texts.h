#pragma once
// The texts of the preferences window and of the exported lists file, written here once.

#include <string_view>

namespace kavor {

inline constexpr std::string_view kPrefsWindowTitle = "Kavor Preferences";

// The last item of each list's popup, which stands for a new entry.
inline constexpr std::string_view kNewEntryItem = "New\u2026";
// What the name and text fields show for a new entry, until the user types over them.
inline constexpr std::string_view kUntitledName = "untitled";
inline constexpr std::string_view kNewPredicateText = "enter predicate here";
inline constexpr std::string_view kNewStyleText = "enter style here";
inline constexpr std::string_view kNewFilterText = "enter filter here";

// The file type both panels of the exported lists allow.
inline constexpr std::string_view kPrefsFileType = "plist";
// The alert's informative text when the exported file cannot be written.
inline constexpr std::string_view kCouldntSaveExported = "Couldn't save exported file.";

}  // namespace kavor
