#pragma once
// Whether a child a test started has really ended, read from the system's process table.

#include <signal.h>
#include <sys/types.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>

namespace kavor::testing_support {

// Ended and reaped: no such process any more.
inline bool processGone(pid_t pid) {
  return ::kill(pid, 0) != 0 && errno == ESRCH;
}

// Ended, though perhaps not reaped yet: an orphan waits for whoever adopted it.
inline bool processEnded(pid_t pid) {
  if (processGone(pid)) return true;
  std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
  std::string line;
  std::getline(stat, line);
  const size_t name = line.rfind(") ");
  return name != std::string::npos && line.compare(name + 2, 1, "Z") == 0;
}

// A process sent a signal ends when it next runs: wait for that, for at most a minute.
inline bool waitUntilEnded(pid_t pid) {
  for (int step = 0; step < 6000; ++step) {
    if (processEnded(pid)) return true;
    const timespec pause{0, 10'000'000};
    ::nanosleep(&pause, nullptr);
  }
  return false;
}

// The process number a scripted tool writes into a file as it starts; 0 when it never does.
inline pid_t waitForPidFile(const std::filesystem::path& file) {
  for (int step = 0; step < 6000; ++step) {
    std::ifstream in(file);
    long pid = 0;
    if (in >> pid && pid > 0) return static_cast<pid_t>(pid);
    const timespec pause{0, 10'000'000};
    ::nanosleep(&pause, nullptr);
  }
  return 0;
}

}  // namespace kavor::testing_support
