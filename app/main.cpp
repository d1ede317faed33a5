// Kavor, the window application: a browser for the system's unified log.

#include <QApplication>
#include <QFile>
#include <QMessageBox>
#include <filesystem>
#include <vector>

#include "app/document/document_controller.h"
#include "app/shell/alerts.h"
#include "app/shell/app_context.h"
#include "app/shell/app_delegate.h"
#include "app/shell/file_panels.h"
#include "app/shell/qt_text.h"
#include "engine/shell/machine_check_system.h"
#include "engine/shell/menu_texts.h"
#include "platform/clock.h"
#include "platform/demo_root.h"
#include "platform/file_settings_store.h"
#include "platform/process_memory.h"
#include "platform/system_paths.h"

int main(int argc, char* argv[]) {
  kavor::returnFreedMemoryPromptly();
  QApplication application(argc, argv);
  QApplication::setApplicationName(kavor::app::qstring(kavor::kApplicationName));
  // The menus are shared by all windows: closing the last window leaves nothing to reach them.
  QApplication::setQuitOnLastWindowClosed(true);

  const kavor::EnvLookup env = kavor::processEnvironment();
  kavor::app::MessageBoxAlerts alerts;
  if (const kavor::Status made = kavor::ensureDemoRoot(env, kavor::runningProgram()); !made)
    alerts.runModal({kavor::app::Alert::Style::warning, "The demo system could not be made.",
                     made.error().message()},
                    nullptr);

  kavor::FileSettingsStore settings(kavor::settingsFilePathFrom(env));
  const kavor::SystemClock clock;
  kavor::app::DialogFilePanels panels;
  const kavor::SystemPaths paths(kavor::systemRootFrom(env));
  kavor::MachineCheckSystem checks(paths, clock);
  kavor::app::AppContext app({settings, paths, clock, alerts, panels, checks});
  // A user who is no administrator cannot read the log: the checks have said so.
  if (!app.delegate().applicationDidFinishLaunching()) return 0;
  // Saved JSON logs named on the command line, as a file manager starts the application; else
  // an empty window.
  std::vector<std::filesystem::path> files;
  for (const QString& argument : QApplication::arguments().mid(1))
    files.emplace_back(QFile::encodeName(argument).toStdString());
  app.documents().openAtLaunch(files);
  return QApplication::exec();
}
