#pragma once
// When the update check runs: at launch, unless switched off, once the interval has passed
// since the last check was started. The three keys live in the settings store so that they can
// be set from outside; each launch writes them back, an absent or too small interval as 12 hours.

#include <functional>

#include "platform/clock.h"
#include "platform/expected.h"
#include "platform/settings_store.h"

namespace kavor {

// The interval a stored value stands for: itself from one second up, else 12 hours.
double updateCheckInterval(double stored);

// Calls startCheck when a check is due, then stores the time; returns at once, since startCheck
// only starts the check. The outcome of the writes is returned for the caller to report.
[[nodiscard]] Status runUpdateSchedule(SettingsStore& settings, const Clock& clock,
                                       const std::function<void()>& startCheck);

}  // namespace kavor
