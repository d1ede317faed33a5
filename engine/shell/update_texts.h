#pragma once
// The update check's settings keys, addresses, feed keys and the texts it shows, written here once.

#include <string_view>

namespace kavor {

inline constexpr std::string_view kNoUpdateCheckKey = "noUpdateCheck";
inline constexpr std::string_view kDateLastUpdateCheckKey = "dateLastUpdateCheck";
inline constexpr std::string_view kUpdateCheckIntervalKey = "updateCheckInt";
// Seconds between checks when the stored interval is below one second (or absent): 12 hours.
inline constexpr double kDefaultUpdateCheckInterval = 43200.0;

// Where the feed is fetched from, and where every offered download must lead.
inline constexpr std::string_view kUpdateFeedAddress = "https://kavor.app/releases/updates.plist";
inline constexpr std::string_view kDownloadAddressPrefix = "https://kavor.app/downloads/";
// Only tests write this key: it points the check at a server of their own instead of the feed
// address above. Nothing in the interface shows or edits it.
inline constexpr std::string_view kUpdateFeedAddressKey = "updateFeedAddressForTests";

// The feed: an array of dictionaries, one per app, with these text values.
inline constexpr std::string_view kFeedAppNameKey = "AppName";
inline constexpr std::string_view kFeedVersionKey = "Version";
inline constexpr std::string_view kFeedUrlKey = "URL";
inline constexpr std::string_view kFeedAppName = "Kavor";

// The answers worth reading; anything else is dropped without a word.
inline constexpr std::string_view kFeedMimeTypes[] = {"text/xml", "text/plain"};

// The Help menu item's title once a feed listing Kavor has been read.
inline constexpr std::string_view kCheckedForUpdateItem = "Checked for update";

// Informative texts of the shell's error alert.
inline constexpr std::string_view kNoVersionAlert =
    "Can't check for updates:\nNo app version string found.";
inline constexpr std::string_view kFeedUnreadableAlert = "Error in update Property List.";
inline constexpr std::string_view kFeedEmptyAlert = "Update Property List has no entries.";

// The offer: the feed's version goes between the message's two parts, the running version
// between the informative text's two parts.
inline constexpr std::string_view kOfferMessageStart = "An update to this app to version ";
inline constexpr std::string_view kOfferMessageEnd = " is available.";
inline constexpr std::string_view kOfferInformativeStart =
    "You are currently running Kavor version ";
inline constexpr std::string_view kOfferInformativeEnd =
    ".\nPlease choose whether to download this update now in your default browser.";
inline constexpr std::string_view kOfferIgnoreButton = "Ignore";
inline constexpr std::string_view kOfferDownloadButton = "Download";
inline constexpr int kOfferDownloadChoice = 1;  // the second button

}  // namespace kavor
