#include "app/shell/app_delegate.h"

#include <QAction>
#include <QDesktopServices>
#include <QMenu>
#include <QUrl>

#include "app/shell/alerts.h"
#include "app/shell/app_context.h"
#include "app/shell/main_menu.h"
#include "app/shell/qt_text.h"
#include "app/shell/update_checker.h"
#include "app/shell/window_controller.h"
#include "app/shell/window_registry.h"
#include "engine/archive/archive_texts.h"
#include "engine/query/settings_texts.h"
#include "engine/shell/check_texts.h"
#include "engine/shell/clock_settings.h"
#include "engine/shell/menu_texts.h"
#include "engine/shell/startup_checks.h"

namespace kavor::app {

AppDelegate::AppDelegate(AppContext& app)
    : app_(app), webPageOpener_([](const QUrl& url) { QDesktopServices::openUrl(url); }) {}
AppDelegate::~AppDelegate() = default;

bool AppDelegate::applicationDidFinishLaunching() {
  const StartupOutcome checked = runStartupChecks(app_.checks(), [this](const StartupAlert& alert) {
    // There is no pane to bring forward here: the desktop's own date and time settings serve.
    if (alert.opensClockSettings()) (void)openClockSettings(processEnvironment());
    showErrorAlert(app_.alerts(), alert.text, nullptr);
  });
  if (checked.quit) return false;
  scheduleUpdateCheck(app_, this);
  dontShowGraphView = app_.settings().boolValue(kDontShowGraphViewKey);
  app_.reportSettings(okStatus(), nullptr);  // the first read may have set the file aside
  app_.menu().showItem(kWindowsMenuTitle, kOpenChartItem, false);
  app_.menu().showItem(kWindowsMenuTitle, kLogarchiveToolItem, true);
  return true;
}

void AppDelegate::enableGraphView() {
  dontShowGraphView = !dontShowGraphView;
  app_.reportSettings(app_.settings().setBool(kDontShowGraphViewKey, dontShowGraphView), nullptr);
  const QMenu* application = app_.menu().menuTitled(kApplicationMenuTitle);
  if (QAction* item = MainMenu::itemTitled(application, kEnableChartViewItem))
    item->setChecked(!dontShowGraphView);
}

void AppDelegate::openArchWindow() {
  openWindowController(kArchWindowControllerId, myArchWindow);
}

void AppDelegate::openCheckLog() {
  openWindowController(kLogCheckWindowId, myCheckLogWindow);
}

void AppDelegate::openField() {
  openWindowController(kFieldWindowControllerId, myField);
}

void AppDelegate::openPrefs() {
  openWindowController(kPrefsWindowControllerId, myPrefsWindow);
}

void AppDelegate::openHelp() {
  openWindowController(kHelpWindowControllerId, myHelpWindow);
}

void AppDelegate::openSupport() {
  openWebPage(kSupportPageAddress);
}

void AppDelegate::openUpdates() {
  openWebPage(kReleasesPageAddress);
}

void AppDelegate::openWebPage(std::string_view address) {
  webPageOpener_(QUrl(qstring(address)));
}

void AppDelegate::closeWindows() {
  for (WindowControllers* list :
       {&myField, &myHelpWindow, &myPrefsWindow, &myCheckLogWindow, &myArchWindow})
    for (const auto& controller : *list)
      if (controller->window()->isVisible()) controller->window()->close();
}

WindowController* AppDelegate::openWindowController(std::string_view identifier,
                                                    WindowControllers& list) {
  std::unique_ptr<WindowController> controller = instantiateWindowController(identifier, app_);
  if (!controller) return nullptr;
  controller->showWindow();
  list.push_back(std::move(controller));
  return list.back().get();
}

}  // namespace kavor::app
