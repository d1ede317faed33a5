#pragma once
// What every window of the application shares: the services handed in by main (or a test), and
// the objects made once per run: the menus, the application delegate and the documents.

#include <filesystem>
#include <memory>
#include <utility>

#include "engine/query/log_collection.h"
#include "engine/shell/settings_trouble.h"
#include "platform/clock.h"
#include "platform/main_thread.h"
#include "platform/settings_store.h"
#include "platform/system_paths.h"

class QWidget;

namespace kavor {
class CheckSystem;
}

namespace kavor::app {

class AlertPresenter;
class AppDelegate;
class DocumentController;
class FilePanels;
class MainMenu;
class QtMainThread;

struct AppServices {
  SettingsStore& settings;
  SystemPaths paths;
  const Clock& clock;
  AlertPresenter& alerts;
  FilePanels& panels;
  // What the start-up checks and the Log Check read of the machine.
  CheckSystem& checks;
};

class AppContext {
 public:
  explicit AppContext(AppServices services);
  ~AppContext();
  AppContext(const AppContext&) = delete;
  AppContext& operator=(const AppContext&) = delete;

  SettingsStore& settings() const { return services_.settings; }
  const SystemPaths& paths() const { return services_.paths; }
  const Clock& clock() const { return services_.clock; }
  AlertPresenter& alerts() const { return services_.alerts; }
  FilePanels& panels() const { return services_.panels; }
  CheckSystem& checks() const { return services_.checks; }

  // Where workers hand their results back; it outlives every document.
  MainThread& mainThread() const;
  MainMenu& menu() const { return *menu_; }
  AppDelegate& delegate() const { return *delegate_; }
  DocumentController& documents() const { return *documents_; }

  // The system's version as the main window compares it; 11 when the system does not say.
  int osVersion() const;
  // The log tool under the system root.
  std::filesystem::path logTool() const;
  // How the privileged collection asks for rights: the stand-in tool of a system root needs none.
  PrivilegeMeans privilegeMeans() const;
  // The folder of the application's own resources (the manual): the program's own folder, where
  // the build puts them, unless told otherwise.
  const std::filesystem::path& resourceFolder() const { return resourceFolder_; }
  void setResourceFolder(std::filesystem::path folder) { resourceFolder_ = std::move(folder); }

  // After the settings were written (with this outcome) or read: alerts for a failed write and
  // for a settings file moved aside as unreadable, each problem once per run.
  void reportSettings(const Status& written, QWidget* parent);

 private:
  AppServices services_;
  std::unique_ptr<QtMainThread> mainThread_;
  std::unique_ptr<MainMenu> menu_;
  std::unique_ptr<AppDelegate> delegate_;
  std::unique_ptr<DocumentController> documents_;
  SettingsTrouble settingsTrouble_;
  std::filesystem::path resourceFolder_;
};

}  // namespace kavor::app
