#pragma once
// One entry of the simulated system's log, with the fields the real tool prints for
// "show --style json". Texts are plain UTF-8; the tool escapes them when it prints.

#include <cstdint>
#include <string>

namespace kavor::standin {

struct LogEntry {
  // When it was logged: microseconds since 1970-01-01 00:00:00 UTC. Printed in the local time
  // zone as "2020-05-01 09:41:07.123456+0100".
  int64_t timeMicros = 0;
  uint64_t machTimestamp = 0;
  std::string messageType;  // "Default", "Info", "Debug", "Error", "Fault"; "" for some events
  std::string eventType;    // "logEvent", "signpostEvent", "activityCreateEvent", ...
  std::string category;
  std::string subsystem;  // may be empty (kernel entries have none)
  uint64_t processUniqueID = 0;
  uint64_t threadID = 0;
  uint64_t traceID = 0;
  uint64_t senderProgramCounter = 0;
  int64_t processID = 0;
  std::string eventMessage;
  std::string formatString;
  std::string processImagePath;
  std::string processImageUUID;
  std::string senderImagePath;
  std::string senderImageUUID;
  std::string timezoneName;
  uint64_t activityIdentifier = 0;
  uint64_t parentActivityIdentifier = 0;
  uint64_t creatorActivityID = 0;
  uint64_t signpostID = 0;  // signposts only
  std::string signpostName;
  std::string signpostType;   // "begin", "end", "event"
  std::string signpostScope;  // "process", "thread", "system"
  std::string bootUUID;
  int64_t userID = 0;
  bool hasBacktrace = false;  // printed as a nested "backtrace" with one frame
};

}  // namespace kavor::standin
