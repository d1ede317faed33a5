#pragma once
// The update feed: which downloaded answers are worth reading, and what a feed offers. The feed
// comes from the network, so nothing in it is trusted: a wrong shape gives an alert text or is
// skipped, and a download address outside Kavor's download site is never offered.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/settings_store.h"

namespace kavor {

// Whether an HTTP answer is read as the feed: status 200 to 299, a media type (the Content-Type
// header without its parameters) of exactly "text/xml" or "text/plain", and some data.
bool updateAnswerUsable(int httpStatus, std::string_view contentType, size_t dataSize);

// The feed address: the fixed one, or the one a test stored under kUpdateFeedAddressKey.
std::string updateFeedAddress(const SettingsStore& settings);

// More than this is no feed: its download is given up.
inline constexpr size_t kMaxUpdateFeedBytes = size_t{1} << 20;

struct UpdateOffer {
  std::string version;  // as the feed lists it
  std::string url;
  bool operator==(const UpdateOffer&) const = default;
};

struct UpdateFeedResult {
  // The informative text of the error alert when the feed cannot be read; nothing else then.
  std::optional<std::string_view> alert;
  // The feed lists Kavor: the Help menu item is marked "Checked for update".
  bool listsKavor = false;
  // One per Kavor entry whose version differs from the running one, in feed order.
  std::vector<UpdateOffer> offers;
};

// Reads an XML or binary property list. An element that is not a dictionary with text
// "AppName", "Version" and "URL" is skipped.
UpdateFeedResult readUpdateFeed(std::string_view bytes, std::string_view runningVersion);

// The offer's alert texts.
std::string updateOfferMessage(const UpdateOffer& offer);
std::string updateOfferInformative(std::string_view runningVersion);

}  // namespace kavor
