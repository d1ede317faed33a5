#include "engine/query/settings_commit.h"

#include <optional>
#include <vector>

namespace kavor {

Status writeAllOrNothing(SettingsStore& store, const PlistDict& values) {
  std::vector<std::optional<PlistValue>> before;
  before.reserve(values.size());
  for (const auto& [key, value] : values)
    before.push_back(store.value(key));

  SettingsBatch batch(store);
  for (const auto& [key, value] : values)
    batch.set(key, value);
  Status written = batch.commit();
  if (written) return written;

  // A store that writes key by key may have taken some of the values, and a file store still
  // holds them in memory for its next write: both must read as before. The undo's own failure
  // adds nothing to tell.
  SettingsBatch undo(store);
  for (size_t i = 0; i < values.size(); ++i) {
    if (before[i])
      undo.set(values[i].first, *before[i]);
    else
      (void)store.removeValue(values[i].first);
  }
  (void)undo.commit();
  return written;
}

}  // namespace kavor
