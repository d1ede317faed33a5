#pragma once
// What a saved result holds besides the result itself: the types it can be saved as, the error a
// failed save or open reports, and the line that says when and by which command it was fetched.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kavor {

inline constexpr std::string_view kPlainTextType = "public.plain-text";
inline constexpr std::string_view kRtfType = "public.rtf";
// Offered while the window shows the CSV text; it is saved as it is shown, without a trailer,
// which would make it invalid CSV.
inline constexpr std::string_view kCsvType = "public.comma-separated-values-text";

// Saving or opening fails with this code of the OSStatus error domain, with no user information.
inline constexpr int kDocumentErrorCode = -4;

// "\nAt " + theNowStr + " for command log " + the arguments joined with single spaces. A window
// that never fetched has an empty time and one empty argument, and says so as it is. Entries
// read from a saved JSON log say "\nAt " + theNowStr + " from " + its path instead.
std::string saveTrailer(std::string_view theNowStr, const std::vector<std::string>& theFullCmdStr,
                        const std::optional<std::filesystem::path>& sourceFile = std::nullopt);

// What the window's status says after a save: "Saved to PATH".
std::string savedStatus(const std::filesystem::path& path);

}  // namespace kavor
