#pragma once
// Several settings written as one change: either all of them reach the store, or the keys are
// put back to what they held, so that a failure part-way never leaves half of an edit stored.

#include "platform/expected.h"
#include "platform/plist_value.h"
#include "platform/settings_store.h"

namespace kavor {

// Writes the values in their order through one batch. When the batch fails, every key is set
// back (or removed) as it was before, and the failure is returned.
[[nodiscard]] Status writeAllOrNothing(SettingsStore& store, const PlistDict& values);

}  // namespace kavor
