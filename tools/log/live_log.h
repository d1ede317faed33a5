#pragma once
// The simulated system's live log: synthetic, and the same for the same time window every time,
// since each second's entries are made from that second alone. About 30 entries a second on
// average, in bursts, of every message and event type, from realistic subsystems and processes.

#include <cstdint>
#include <functional>
#include <vector>

#include "tools/log/log_entry.h"

namespace kavor::standin {

// Calls `take` with each entry logged in [fromMicros, toMicros), in time order.
void forEachLiveEntry(int64_t fromMicros, int64_t toMicros,
                      const std::function<void(const LogEntry&)>& take);

std::vector<LogEntry> liveEntries(int64_t fromMicros, int64_t toMicros);

}  // namespace kavor::standin
