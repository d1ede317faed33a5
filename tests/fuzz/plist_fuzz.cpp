// Feeds arbitrary bytes to the property-list reader, and what it accepts back through the writer.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/plist_value.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto parsed = kavor::parsePlist(bytes);
  if (!parsed) return 0;
  // What we write must read back; equality is not asked for, since the XML form drops
  // fractions of seconds and text after a NUL.
  const auto again = kavor::parsePlist(kavor::writeXmlPlist(*parsed));
  if (!again) __builtin_trap();
  return 0;
}
