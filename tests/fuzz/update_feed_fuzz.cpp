// Feeds arbitrary bytes to the update feed reader and holds it to its promises: an unreadable
// feed offers nothing, and every offer leads to the download site.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "engine/shell/update_feed.h"
#include "engine/shell/update_texts.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const kavor::UpdateFeedResult read = kavor::readUpdateFeed(bytes, "1.0.0");
  if (read.alert && (read.listsKavor || !read.offers.empty())) __builtin_trap();
  if (!read.offers.empty() && !read.listsKavor) __builtin_trap();
  for (const kavor::UpdateOffer& offer : read.offers)
    if (!offer.url.starts_with(kavor::kDownloadAddressPrefix) || offer.version == "1.0.0")
      __builtin_trap();
  return 0;
}
