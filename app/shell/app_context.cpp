#include "app/shell/app_context.h"

#include <QCoreApplication>
#include <QFile>

#include "app/document/document_controller.h"
#include "app/shell/alerts.h"
#include "app/shell/app_delegate.h"
#include "app/shell/main_menu.h"
#include "app/shell/menu_actions.h"
#include "app/shell/qt_main_thread.h"
#include "engine/query/main_settings.h"
#include "platform/system_version.h"

namespace kavor::app {

namespace {

constexpr std::string_view kLogToolPath = "/usr/bin/log";

}  // namespace

AppContext::AppContext(AppServices services)
    : services_(std::move(services)),
      mainThread_(std::make_unique<QtMainThread>()),
      menu_(std::make_unique<MainMenu>()),
      delegate_(std::make_unique<AppDelegate>(*this)),
      documents_(std::make_unique<DocumentController>(*this)),
      resourceFolder_(QFile::encodeName(QCoreApplication::applicationDirPath()).toStdString()) {
  connectMenuActions(*this);
}

AppContext::~AppContext() {
  // Windows go before the menus their menu bars show.
  documents_.reset();
  delegate_.reset();
}

MainThread& AppContext::mainThread() const {
  return *mainThread_;
}

int AppContext::osVersion() const {
  const auto version = readSystemVersion(paths());
  return version ? osVersionFrom(*version) : MainSettings{}.osVersion;
}

std::filesystem::path AppContext::logTool() const {
  return paths().resolve(kLogToolPath);
}

void AppContext::reportSettings(const Status& written, QWidget* parent) {
  for (const SettingsNotice& notice : settingsTrouble_.noticesAfter(settings(), written))
    alerts().runModal({Alert::Style::warning, notice.message, notice.informative, {"OK"}}, parent);
}

PrivilegeMeans AppContext::privilegeMeans() const {
  if (paths().root() != "/") return PrivilegeMeans::direct;
#ifdef __APPLE__
  return PrivilegeMeans::appleScript;
#else
  return PrivilegeMeans::pkexec;
#endif
}

}  // namespace kavor::app
