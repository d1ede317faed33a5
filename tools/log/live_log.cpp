#include "tools/log/live_log.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace kavor::standin {

namespace {

constexpr int64_t kMicrosPerSecond = 1000000;

// Mixes a number into an unpredictable-looking one; the same input always gives the same output.
uint64_t mix(uint64_t z) {
  z += 0x9E3779B97F4A7C15ull;
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
  return z ^ (z >> 31);
}

struct Rng {
  uint64_t s;
  uint64_t next() { return mix(s++); }
  size_t below(size_t n) { return static_cast<size_t>(next() % n); }
};

// A process that logs: where its image lives, its subsystem and categories.
struct Source {
  std::string_view subsystem;
  std::string_view categories[3];
  std::string_view process;
  std::string_view sender;
  int64_t pid;
  std::string_view uuid;
};

constexpr std::array<Source, 14> kSources = {{
    {"com.apple.xpc",
     {"connection", "activity", "service"},
     "/usr/sbin/cfprefsd",
     "/usr/lib/system/libxpc.dylib",
     412,
     "E6A0B2C4-5D71-38F9-A2E4-0C9B7D16F385"},
    {"com.apple.TimeMachine",
     {"BackupScheduling", "BackupDestination", "Performance"},
     "/System/Library/CoreServices/backupd.bundle/Contents/Resources/backupd",
     "/System/Library/PrivateFrameworks/TimeMachine.framework/Versions/A/TimeMachine",
     1531,
     "5B2E9C71-0A4D-3E86-B1F7-29D8C4E6A013"},
    {"com.apple.sandbox",
     {"violation", "reporting", "sandboxd"},
     "/usr/libexec/sandboxd",
     "/usr/libexec/sandboxd",
     298,
     "C47E1A08-6B93-3D25-9F0E-8A1C5D7B2E64"},
    {"com.apple.launchd",
     {"default", "lifecycle", "boot"},
     "/sbin/launchd",
     "/sbin/launchd",
     1,
     "1F8D3A62-7C04-3B59-A6E1-D90B4C2F7E85"},
    {"com.apple.network",
     {"connection", "path", "boringssl"},
     "/usr/libexec/nsurlsessiond",
     "/System/Library/Frameworks/Network.framework/Versions/A/Network",
     377,
     "8A3C6E19-2F75-3D04-B8E2-61C9A0D7F453"},
    {"com.apple.WindowServer",
     {"default", "display", "session"},
     "/System/Library/PrivateFrameworks/SkyLight.framework/Versions/A/Resources/WindowServer",
     "/System/Library/PrivateFrameworks/SkyLight.framework/Versions/A/SkyLight",
     163,
     "D2B7F041-9E36-3A58-8C1D-47E0A6B93F12"},
    {"com.apple.runningboard",
     {"process", "assertion", "monitor"},
     "/usr/libexec/runningboardd",
     "/System/Library/PrivateFrameworks/RunningBoard.framework/"
     "Versions/A/RunningBoard",
     188,
     "6E09C3B8-4D17-3F62-A5B0-92E7D1C48A36"},
    {"com.apple.securityd",
     {"security", "keychain", "trust"},
     "/usr/libexec/securityd",
     "/System/Library/Frameworks/Security.framework/Versions/A/Security",
     240,
     "B915D7A2-3C68-3E40-9A7F-05D6E2B1C874"},
    {"com.apple.powerd",
     {"sleepWake", "assertions", "battery"},
     "/System/Library/CoreServices/"
     "powerd.bundle/powerd",
     "/System/Library/CoreServices/powerd.bundle/powerd",
     96,
     "4C7A0E53-81B9-3D26-8F4E-C1A50B97D238"},
    {"co.tarnwick.nimbet",
     {"notes", "sync", "profiles"},
     "/Applications/Nimbet.app/Contents/MacOS/Nimbet",
     "/Applications/Nimbet.app/Contents/MacOS/Nimbet",
     1688,
     "9D4F2B86-E07A-3C51-B6D3-7A18E5C290F4"},
    {"com.apple.bluetooth",
     {"Server", "CBCore", "power"},
     "/usr/sbin/bluetoothd",
     "/usr/sbin/bluetoothd",
     204,
     "27E8B5C0-A946-3F13-8D72-E0C34B6A91D5"},
    {"com.apple.coreanalytics",
     {"client", "daemon", "config"},
     "/System/Library/PrivateFrameworks/CoreAnalytics.framework/Versions/A/Support/analyticsd",
     "/System/Library/PrivateFrameworks/CoreAnalytics.framework/Versions/A/CoreAnalytics",
     311,
     "F03A6D18-5B2C-3E97-A4C1-8E6D07B2F539"},
    // Processes that log without a subsystem.
    {"",
     {"", "", ""},
     "/usr/libexec/mdworker_shared",
     "/usr/lib/libSystem.B.dylib",
     1893,
     "7B1C9E04-D26A-3F85-93E0-B4A7C5D128F6"},
    {"",
     {"", "", ""},
     "/usr/sbin/syslogd",
     "/usr/sbin/syslogd",
     117,
     "A85D2F37-C190-3B64-8E2A-D0F6B94C7E13"},
}};

// The kernel logs as process 0 with no subsystem.
constexpr Source kKernel = {
    "",        {"", "", ""},
    "/kernel", "/System/Library/Extensions/Sandbox.kext/Contents/MacOS/Sandbox",
    0,         "0A4C7E21-D3B8-3F95-8C60-E27B14A9D05F"};

// Messages with what the factory predicates and filters look for: errors, failures, "===",
// "boot:", shutdowns, backups, Time Machine, quotes, line feeds and text beyond ASCII.
constexpr std::array<std::string_view, 24> kMessages = {
    "activating connection: mach=true listener=false peer=false name=com.apple.cfprefsd.daemon",
    "Starting automatic backup",
    "Backup completed successfully\nCopied 1204 items (38.6 MB)",
    "Failed to mount the backup disk: error 16 (Resource busy)",
    "Time Machine destination \"Backups\" is not available",
    "TimeMachine: skipping scheduled backup, on battery power",
    "=== system wake: lid opened ===",
    "boot: booting from disk1s5, kernel cache loaded",
    "shutdown requested by loginwindow (reason: restart)",
    "Sandbox: mdworker_shared(1893) deny(1) file-read-data /Users/demo/Library/Mail",
    "service com.apple.apsd failed to start: exited with code 78",
    "connection invalidated: error Domain=NSCocoaErrorDomain Code=4099",
    "Opened note café ☕ (2 attachments)",
    "Loaded profile \"Default\" from /Users/demo/Library/Application Support/Nimbet",
    "IOPMrootDomain: idle sleep timer set to 10 min",
    "process exited: pid 2231 status 0",
    "request completed in 12 ms",
    "AppleKeyStore: operation failed (pid: 240 sel: 7 ret: e00002c2)",
    "com.apple.xpc.launchd: service started, pid 2231",
    "kernel: memorystatus: killing idle process 2231 (reason: vm-pressure)",
    "Übertragung abgeschlossen: 3 Dateien, Größe 1,2 MB",
    "Power assertion created: \"PreventUserIdleSystemSleep\" by coreaudiod",
    "fetch scheduled: next run at 09:41 tomorrow",
    "network path changed: satisfied (Path is satisfied), interface: en0",
};

constexpr std::array<std::string_view, 6> kSignpostNames = {
    "ScanVolume", "CopyItems", "LaunchApp", "RenderFrame", "ConnectPeer", "IndexFolder"};

// Seconds are made from their own number alone, so any window gives the same entries.
LogEntry entryAt(int64_t timeMicros, Rng& rng) {
  LogEntry e;
  e.timeMicros = timeMicros;
  e.machTimestamp = static_cast<uint64_t>(timeMicros) * 24 + rng.below(24);
  const bool kernel = rng.below(12) == 0;
  const Source& src = kernel ? kKernel : kSources[rng.below(kSources.size())];
  e.subsystem = src.subsystem;
  e.category = src.categories[rng.below(3)];
  e.processImagePath = src.process;
  e.senderImagePath = src.sender;
  e.processImageUUID = src.uuid;
  e.senderImageUUID = kernel ? "B81D4F26-0E93-3A7C-95D2-6F0A1C8E4B37" : src.uuid;
  e.processID = src.pid;
  e.processUniqueID = kernel ? 0 : static_cast<uint64_t>(src.pid) * 7 + 1000;
  e.threadID = 1040000 + rng.below(20000);
  e.traceID = rng.next() >> 12;
  e.senderProgramCounter = rng.below(400000);
  e.bootUUID = "6A1E0C94-27B3-4F58-9D06-E3B1C7A2F540";
  e.userID = src.pid < 200 ? 0 : 501;
  e.hasBacktrace = rng.below(4) == 0;
  e.eventMessage = kMessages[rng.below(kMessages.size())];
  e.formatString = "%{public}s";

  // Mostly log messages of every type; now and then a signpost, an activity or another event.
  const size_t kind = rng.below(100);
  static constexpr std::array<std::string_view, 10> kTypes = {
      "Default", "Default", "Default", "Default", "Info",
      "Info",    "Debug",   "Debug",   "Error",   "Fault"};
  if (kind < 84) {
    e.eventType = "logEvent";
    e.messageType = kTypes[rng.below(kTypes.size())];
  } else if (kind < 92) {
    e.eventType = "signpostEvent";
    e.messageType = "Default";
    e.signpostID = rng.next() >> 8;
    e.signpostName = kSignpostNames[rng.below(kSignpostNames.size())];
    static constexpr std::array<std::string_view, 3> kSignpostTypes = {"begin", "end", "event"};
    static constexpr std::array<std::string_view, 3> kScopes = {"process", "thread", "system"};
    e.signpostType = kSignpostTypes[rng.below(3)];
    e.signpostScope = kScopes[rng.below(3)];
  } else if (kind < 95) {
    e.eventType = "activityCreateEvent";
    e.eventMessage = "Backup Session";
    e.activityIdentifier = 0x1000 + rng.below(0x10000);
    e.parentActivityIdentifier = rng.below(2) ? 0 : 0x1000 + rng.below(0x1000);
    e.creatorActivityID = e.parentActivityIdentifier;
  } else {
    static constexpr std::array<std::string_view, 7> kOthers = {
        "activityTransitionEvent", "traceEvent", "stateEvent", "userActionEvent",
        "timesyncEvent",           "lossEvent",  "traceEvent"};
    e.eventType = kOthers[rng.below(kOthers.size())];
  }
  if (e.eventType == "logEvent" || e.eventType == "signpostEvent")
    e.activityIdentifier = rng.below(3) == 0 ? 0x1000 + rng.below(0x10000) : 0;
  return e;
}

// Bursts now and then over a steady trickle: about 30 entries a second on average.
size_t entriesInSecond(Rng& rng) {
  if (rng.below(20) == 0) return 150 + rng.below(150);
  return 5 + rng.below(30);
}

}  // namespace

void forEachLiveEntry(int64_t fromMicros, int64_t toMicros,
                      const std::function<void(const LogEntry&)>& take) {
  if (toMicros <= fromMicros) return;
  const auto floorDiv = [](int64_t a) {
    return a / kMicrosPerSecond - (a % kMicrosPerSecond < 0 ? 1 : 0);
  };
  std::vector<int64_t> offsets;
  for (int64_t second = floorDiv(fromMicros); second <= floorDiv(toMicros - 1); ++second) {
    Rng rng{mix(static_cast<uint64_t>(second) ^ 0x4B61766F724C6F67ull)};
    offsets.resize(entriesInSecond(rng));
    for (int64_t& o : offsets)
      o = static_cast<int64_t>(rng.below(kMicrosPerSecond - 1000));
    std::sort(offsets.begin(), offsets.end());
    // Strictly increasing, so that entries merged back from several files keep one order.
    for (size_t i = 1; i < offsets.size(); ++i)
      offsets[i] = std::max(offsets[i], offsets[i - 1] + 1);
    for (const int64_t o : offsets) {
      const int64_t t = second * kMicrosPerSecond + o;
      const LogEntry e = entryAt(t, rng);
      if (t >= fromMicros && t < toMicros) take(e);
    }
  }
}

std::vector<LogEntry> liveEntries(int64_t fromMicros, int64_t toMicros) {
  std::vector<LogEntry> entries;
  forEachLiveEntry(fromMicros, toMicros, [&entries](const LogEntry& e) { entries.push_back(e); });
  return entries;
}

}  // namespace kavor::standin
