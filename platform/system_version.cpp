#include "platform/system_version.h"

#include <charconv>

#include "platform/file_bytes.h"
#include "platform/plist_value.h"

namespace kavor {

namespace {

constexpr std::string_view kVersionFile = "/System/Library/CoreServices/SystemVersion.plist";
constexpr std::string_view kVersionKey = "ProductVersion";
// The real file is well under a kilobyte.
constexpr uint64_t kMaxVersionFileBytes = uint64_t{1} << 20;

bool isSpace(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

}  // namespace

Expected<SystemVersion> parseProductVersion(std::string_view text) {
  while (!text.empty() && isSpace(text.front()))
    text.remove_prefix(1);
  while (!text.empty() && isSpace(text.back()))
    text.remove_suffix(1);
  const auto bad = [&] {
    return Error{ErrorKind::parse, "not a system version: \"" + std::string(text) + "\""};
  };
  int parts[3] = {0, 0, 0};
  const char* p = text.data();
  const char* end = text.data() + text.size();
  // Up to three numbers joined by dots; whatever follows them ("14.5 beta") is not read.
  for (int i = 0; i < 3; ++i) {
    const auto [next, ec] = std::from_chars(p, end, parts[i]);
    if (ec != std::errc() || parts[i] < 0) {
      if (i == 0 || ec == std::errc::result_out_of_range || parts[i] < 0) return bad();
      break;
    }
    p = next;
    if (p == end || *p != '.') break;
    ++p;
  }
  return SystemVersion{parts[0], parts[1], parts[2]};
}

Expected<SystemVersion> readSystemVersion(const SystemPaths& paths) {
  const std::string where = "reading the system version from " + std::string(kVersionFile);
  const auto bytes = readFileBytes(paths.resolve(kVersionFile), kMaxVersionFileBytes);
  if (!bytes) return Error{bytes.error().kind, where, bytes.error().sysErrno};
  const auto list = parsePlist(*bytes);
  if (!list) return Error{list.error().kind, where + ": " + list.error().context};
  const PlistValue* version = list->find(kVersionKey);
  if (!version) return Error{ErrorKind::notFound, where + ": no " + std::string(kVersionKey)};
  const std::string* text = version->get<std::string>();
  if (!text)
    return Error{ErrorKind::parse, where + ": " + std::string(kVersionKey) + " is not text"};
  auto parsed = parseProductVersion(*text);
  if (!parsed) return Error{ErrorKind::parse, where + ": " + parsed.error().context};
  return parsed;
}

int osVersionFrom(const SystemVersion& version) {
  if (version.major == 10) return version.minor;
  if (version.major == 11) return 16;
  return 17;
}

}  // namespace kavor
