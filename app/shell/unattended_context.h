#pragma once

#include <chrono>
#include <filesystem>
#include <functional>

#include "app/shell/app_context.h"
#include "app/shell/file_panels.h"
#include "engine/shell/machine_check_system.h"
#include "platform/clock.h"
#include "platform/settings_store.h"
#include "platform/system_paths.h"

namespace kavor::app {

// Nobody is there to choose a file: every panel is cancelled.
class NoPanels final : public FilePanels {
 public:
  std::optional<std::filesystem::path> runOpenPanel(const OpenPanelRequest&, QWidget*) override;
  std::optional<SaveChoice> runSavePanel(const SavePanelRequest&, QWidget*) override;
};

// The application on a system root with nobody at the screen, as the programs that drive it
// (the manual's pictures, the window benchmark) run it: settings in memory, a pinned clock,
// no panels, and alerts answered by the caller's presenter.
class UnattendedContext {
 public:
  UnattendedContext(const std::filesystem::path& root, double now, AlertPresenter& alerts);
  UnattendedContext(const UnattendedContext&) = delete;
  UnattendedContext& operator=(const UnattendedContext&) = delete;

  AppContext& app() { return app_; }

 private:
  MemorySettingsStore settings_;
  FixedClock clock_;
  NoPanels panels_;
  SystemPaths paths_;
  MachineCheckSystem checks_;
  AppContext app_;
};

// Runs the event loop until done() holds; false when it still does not after the limit.
bool runEventsUntil(const std::function<bool()>& done, std::chrono::milliseconds limit);

}  // namespace kavor::app
