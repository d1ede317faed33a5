#include "bench/synthetic_log.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <string_view>

namespace kavor::bench {

namespace {

struct Rng {
  uint64_t s;
  uint64_t next() {
    s += 0x9E3779B97F4A7C15ull;
    uint64_t z = s;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
  }
  size_t below(size_t n) { return static_cast<size_t>(next() % n); }
};

constexpr std::array<std::string_view, 24> kSubsystems = {
    "com.apple.xpc",           "com.apple.launchd",
    "com.apple.TimeMachine",   "com.apple.sandbox",
    "com.apple.network",       "com.apple.WindowServer",
    "com.apple.bluetooth",     "com.apple.runningboard",
    "com.apple.coreanalytics", "com.apple.spotlight",
    "com.apple.mdworker",      "com.apple.securityd",
    "com.apple.CFNetwork",     "com.apple.locationd",
    "com.apple.powerd",        "com.apple.kernel",
    "co.tarnwick.nimbet",      "com.apple.AppKit",
    "com.apple.defaults",      "com.apple.duetactivityscheduler",
    "com.apple.TCC",           "com.apple.apsd",
    "com.apple.cloudkit",      "",
};
constexpr std::array<std::string_view, 12> kCategories = {
    "connection", "default", "general", "lifecycle", "activity", "state",
    "boot",       "daemon",  "policy",  "fetch",     "io",       "",
};
constexpr std::array<std::string_view, 16> kImages = {
    "/usr/libexec/xpcproxy",
    "/sbin/launchd",
    "/System/Library/CoreServices/backupd.bundle/Contents/Resources/backupd",
    "/usr/libexec/sandboxd",
    "/usr/libexec/nsurlsessiond",
    "/System/Library/PrivateFrameworks/SkyLight.framework/Versions/A/Resources/WindowServer",
    "/usr/sbin/bluetoothd",
    "/usr/libexec/runningboardd",
    "/System/Library/PrivateFrameworks/CoreAnalytics.framework/Versions/A/Support/analyticsd",
    "/System/Library/Frameworks/CoreServices.framework/Frameworks/Metadata.framework/Versions/A/"
    "Support/mds",
    "/usr/lib/system/libxpc.dylib",
    "/usr/lib/libSystem.B.dylib",
    "/System/Library/Frameworks/CFNetwork.framework/Versions/A/CFNetwork",
    "/Applications/Nimbet.app/Contents/MacOS/Nimbet",
    "/System/Library/Frameworks/Foundation.framework/Versions/C/Foundation",
    "/kernel",
};
constexpr std::array<std::string_view, 10> kWords = {
    "connection", "activated", "error",   "failed",  "start",
    "shutdown",   "backup",    "service", "request", "completed",
};
constexpr std::array<std::string_view, 6> kMessageTypes = {"Default", "Info",  "Debug",
                                                           "Error",   "Fault", "Default"};

void appendEscaped(std::string& out, std::string_view text) {
  for (char c : text) {
    if (c == '/')
      out += "\\/";
    else if (c == '"')
      out += "\\\"";
    else if (c == '\n')
      out += "\\n";
    else
      out += c;
  }
}

std::string makeUuid(uint64_t a) {
  char buf[40];
  Rng r{a};
  const uint64_t x = r.next(), y = r.next();
  std::snprintf(buf, sizeof buf, "%08X-%04X-%04X-%04X-%012llX", static_cast<unsigned>(x >> 32),
                static_cast<unsigned>((x >> 16) & 0xFFFF), static_cast<unsigned>(x & 0xFFFF),
                static_cast<unsigned>(y >> 48),
                static_cast<unsigned long long>(y & 0xFFFFFFFFFFFFull));
  return buf;
}

// Image UUIDs repeat with their images: made once.
void appendUuid(std::string& out, size_t image) {
  static const std::array<std::string, kImages.size()> uuids = [] {
    std::array<std::string, kImages.size()> a;
    for (size_t i = 0; i < a.size(); ++i)
      a[i] = makeUuid(i);
    return a;
  }();
  out += uuids[image];
}

void appendNumber(std::string& out, uint64_t v) {
  char buf[24];
  auto [end, ec] = std::to_chars(buf, buf + sizeof buf, v);
  out.append(buf, end);
}

void appendPadded(std::string& out, uint64_t v, int width) {
  char buf[24];
  for (int i = width - 1; i >= 0; --i, v /= 10)
    buf[i] = static_cast<char>('0' + v % 10);
  out.append(buf, static_cast<size_t>(width));
}

void appendMessage(std::string& out, Rng& r, size_t index) {
  const size_t words = 3 + r.below(40);
  for (size_t w = 0; w < words; ++w) {
    if (w) out += ' ';
    out += kWords[r.below(kWords.size())];
  }
  out += " #";
  appendNumber(out, index);
  out += " pid=";
  appendNumber(out, r.below(100000));
  switch (r.below(16)) {
    case 0:
      out += " \\\"quoted\\\" path \\/private\\/var\\/tmp";
      break;
    case 1:
      out += " line one\\nline two";
      break;
    case 2:
      out += " caf\xC3\xA9 \xF0\x9F\x98\x80 e\xCC\x81";
      break;
    case 3:
      out += " \\u00e9\\u2603 tab\\tend";
      break;
    default:
      break;
  }
}

}  // namespace

void appendSyntheticEntries(std::string& out, uint64_t seed, size_t first, size_t count) {
  for (size_t i = first; i < first + count; ++i) {
    Rng r{seed * 1000003u + i};
    const size_t image = r.below(kImages.size());
    const size_t sender = r.below(kImages.size());
    const size_t kind = r.below(40);
    const std::string_view eventType = kind == 0  ? "activityCreateEvent"
                                       : kind < 4 ? "signpostEvent"
                                                  : "logEvent";
    if (i) out += ",";
    out += "{\n  \"traceID\" : ";
    // Every eighth identifier is above the signed 64-bit range, as the tool prints them.
    const uint64_t trace = (i % 8 == 0) ? 0xF000000000000000ull | r.next() : r.next() >> 12;
    appendNumber(out, trace);
    out += ",\n  \"eventMessage\" : \"";
    appendMessage(out, r, i);
    out += "\",\n  \"eventType\" : \"";
    out += eventType;
    out += "\",\n  \"source\" : null,\n  \"formatString\" : \"%{public}s: %{public}@ pid=%d\",\n";
    out += "  \"userID\" : 501,\n  \"activityIdentifier\" : ";
    appendNumber(out, kind == 0 ? r.next() >> 20 : 0);
    out += ",\n  \"subsystem\" : \"";
    out += kSubsystems[r.below(kSubsystems.size())];
    out += "\",\n  \"category\" : \"";
    out += kCategories[r.below(kCategories.size())];
    out += "\",\n  \"threadID\" : ";
    appendNumber(out, 1000 + r.below(5000000));
    out += ",\n  \"senderImageUUID\" : \"";
    appendUuid(out, sender);
    out += "\",\n  \"backtrace\" : {\n    \"frames\" : [\n      {\n        \"imageOffset\" : ";
    appendNumber(out, r.below(1 << 20));
    out += ",\n        \"imageUUID\" : \"";
    appendUuid(out, sender);
    out += "\"\n      }\n    ]\n  },\n  \"bootUUID\" : \"\",\n  \"processImagePath\" : \"";
    appendEscaped(out, kImages[image]);
    out += "\",\n  \"senderImagePath\" : \"";
    appendEscaped(out, kImages[sender]);
    const size_t second = i / 50;
    out += "\",\n  \"timestamp\" : \"2020-05-01 ";
    appendPadded(out, 9 + second / 3600 % 12, 2);
    out += ':';
    appendPadded(out, second / 60 % 60, 2);
    out += ':';
    appendPadded(out, second % 60, 2);
    out += '.';
    appendPadded(out, (i % 50) * 20000 + r.below(20000), 6);
    out += "+0100\",\n";
    out += "  \"machTimestamp\" : ";
    appendNumber(out, 1000000000ull + i * 1234567ull);
    out += ",\n  \"messageType\" : \"";
    out += kMessageTypes[r.below(kMessageTypes.size())];
    out += "\",\n  \"processImageUUID\" : \"";
    appendUuid(out, image);
    out += "\",\n  \"processID\" : ";
    appendNumber(out, image * 37 + 1);
    out += ",\n  \"senderProgramCounter\" : ";
    appendNumber(out, r.below(1 << 24));
    out += ",\n";
    if (eventType == "signpostEvent") {
      out += "  \"signpostID\" : ";
      appendNumber(out, r.next() >> 1);
      out += ",\n  \"signpostName\" : \"Fetch\",\n  \"signpostType\" : \"";
      out += (i & 1) ? "begin" : "end";
      out += "\",\n  \"signpostScope\" : \"thread\",\n";
    }
    out += "  \"parentActivityIdentifier\" : 0,\n  \"timezoneName\" : \"\",\n";
    out += "  \"processUniqueID\" : ";
    appendNumber(out, image * 1000 + 7);
    out += ",\n  \"creatorActivityID\" : 0\n}";
  }
}

std::string syntheticLog(size_t count, uint64_t seed) {
  std::string out;
  out.reserve(count * 1300 + 16);
  out += "[";
  appendSyntheticEntries(out, seed, 0, count);
  out += "]\n";
  return out;
}

}  // namespace kavor::bench
