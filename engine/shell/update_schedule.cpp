#include "engine/shell/update_schedule.h"

#include "engine/shell/update_texts.h"

namespace kavor {

double updateCheckInterval(double stored) {
  // Written so that NaN also reads as the default.
  return stored >= 1.0 ? stored : kDefaultUpdateCheckInterval;
}

Status runUpdateSchedule(SettingsStore& settings, const Clock& clock,
                         const std::function<void()>& startCheck) {
  const bool off = settings.boolValue(kNoUpdateCheckKey);
  const double last = settings.doubleValue(kDateLastUpdateCheckKey);
  const double interval = updateCheckInterval(settings.doubleValue(kUpdateCheckIntervalKey));
  const double now = clock.now();
  SettingsBatch batch(settings);
  // Strictly longer than the interval; the time is kept whatever the check comes to, so a check
  // that fails waits for the next interval as well.
  if (!off && interval < now - last) {
    startCheck();
    batch.set(kDateLastUpdateCheckKey, now);
  }
  batch.set(kNoUpdateCheckKey, off);
  batch.set(kUpdateCheckIntervalKey, interval);
  return batch.commit();
}

}  // namespace kavor
