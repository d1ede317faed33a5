#include "engine/shell/update_feed.h"

#include <algorithm>

#include "engine/shell/update_texts.h"
#include "platform/plist_value.h"

namespace kavor {

namespace {

std::string_view trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

const std::string* textOf(const PlistValue& entry, std::string_view key) {
  const PlistValue* value = entry.find(key);
  return value ? value->get<std::string>() : nullptr;
}

// At the start, not anywhere in it: an address that carries the prefix only in its query or
// path leads somewhere else.
bool onDownloadSite(std::string_view url) {
  return url.starts_with(kDownloadAddressPrefix);
}

}  // namespace

bool updateAnswerUsable(int httpStatus, std::string_view contentType, size_t dataSize) {
  const std::string_view mimeType = trimmed(contentType.substr(0, contentType.find(';')));
  return httpStatus >= 200 && httpStatus <= 299 && dataSize > 0 &&
         std::find(std::begin(kFeedMimeTypes), std::end(kFeedMimeTypes), mimeType) !=
             std::end(kFeedMimeTypes);
}

std::string updateFeedAddress(const SettingsStore& settings) {
  std::optional<std::string> stored = settings.stringValue(kUpdateFeedAddressKey);
  if (stored && !stored->empty()) return std::move(*stored);
  return std::string(kUpdateFeedAddress);
}

UpdateFeedResult readUpdateFeed(std::string_view bytes, std::string_view runningVersion) {
  UpdateFeedResult result;
  const Expected<PlistValue> feed = parsePlist(bytes);
  const PlistArray* entries = feed ? feed->get<PlistArray>() : nullptr;
  if (!entries) {
    result.alert = kFeedUnreadableAlert;
    return result;
  }
  if (entries->empty()) {
    result.alert = kFeedEmptyAlert;
    return result;
  }
  // Every entry is visited: a feed that lists Kavor twice makes two offers.
  for (const PlistValue& entry : *entries) {
    const std::string* name = textOf(entry, kFeedAppNameKey);
    const std::string* version = textOf(entry, kFeedVersionKey);
    const std::string* url = textOf(entry, kFeedUrlKey);
    if (!name || !version || !url || *name != kFeedAppName) continue;
    result.listsKavor = true;
    // Compared as text: an older version than the running one is offered too.
    if (*version == runningVersion || !onDownloadSite(*url)) continue;
    result.offers.push_back({*version, *url});
  }
  return result;
}

std::string updateOfferMessage(const UpdateOffer& offer) {
  return std::string(kOfferMessageStart) + offer.version + std::string(kOfferMessageEnd);
}

std::string updateOfferInformative(std::string_view runningVersion) {
  return std::string(kOfferInformativeStart) + std::string(runningVersion) +
         std::string(kOfferInformativeEnd);
}

}  // namespace kavor
