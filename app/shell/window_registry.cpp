#include "app/shell/window_registry.h"

#include <QMenuBar>
#include <functional>
#include <utility>
#include <vector>

#include "app/archive/arch_view_controller.h"
#include "app/document/document_controller.h"
#include "app/document/field_view_controller.h"
#include "app/document/graph_view_controller.h"
#include "app/query/view_controller.h"
#include "app/shell/app_context.h"
#include "app/shell/check_log_view_controller.h"
#include "app/shell/help_view_controller.h"
#include "app/shell/kv_main_window.h"
#include "app/shell/main_menu.h"
#include "app/shell/prefs_view_controller.h"
#include "app/shell/window_controller.h"
#include "engine/archive/archive_texts.h"
#include "engine/shell/check_texts.h"
#include "engine/shell/menu_texts.h"

namespace kavor::app {

namespace {

std::unique_ptr<WindowController> makeDocumentWindowController(AppContext& app) {
  auto window = std::make_unique<KvMainWindow>();
  app.menu().attachTo(window->menuBar());
  window->resize(1100, 720);
  QObject::connect(window.get(), &KvMainWindow::jsonLogDropped, &app.documents(),
                   &DocumentController::openJsonLog);
  auto* content = new ViewController(app);
  auto controller = std::make_unique<WindowController>(std::move(window), content);
  content->viewDidLoad();
  return controller;
}

std::unique_ptr<WindowController> makeGraphWindowController(AppContext& app) {
  auto window = std::make_unique<ControllerWindow>();
  app.menu().attachTo(window->menuBar());
  window->resize(900, 420);
  return std::make_unique<WindowController>(std::move(window), new GraphViewController(app));
}

// A report window (the Logarchive Tool, the Log Check): it takes its own menu commands while in
// front; closing one whose work can stop stops it, keeping the window and its text.
template <class Controller, int width, int height>
std::unique_ptr<WindowController> makeReportWindowController(AppContext& app) {
  auto window = std::make_unique<ControllerWindow>();
  app.menu().attachTo(window->menuBar());
  window->resize(width, height);
  auto* content = new Controller(app);
  auto controller = std::make_unique<WindowController>(std::move(window), content);
  controller->setCommandTarget(content);
  if constexpr (requires { &Controller::stopWork; })
    QObject::connect(controller.get(), &WindowController::windowWillClose, content,
                     &Controller::stopWork);
  content->viewDidLoad();
  return controller;
}

std::unique_ptr<WindowController> makeFieldWindowController(AppContext& app) {
  auto window = std::make_unique<ControllerWindow>();
  app.menu().attachTo(window->menuBar());
  window->resize(300, 400);  // 16 lines; the longer lists grow it
  auto* content = new FieldViewController(app);
  auto controller = std::make_unique<WindowController>(std::move(window), content);
  content->viewDidLoad();
  return controller;
}

// Closing the window stores the edits, as the window going away does.
std::unique_ptr<WindowController> makePrefsWindowController(AppContext& app) {
  auto window = std::make_unique<ControllerWindow>();
  app.menu().attachTo(window->menuBar());
  window->resize(640, 600);
  auto* content = new PrefsViewController(app);
  auto controller = std::make_unique<WindowController>(std::move(window), content);
  QObject::connect(controller.get(), &WindowController::windowWillClose, content,
                   &PrefsViewController::viewWillDisappear);
  content->viewDidLoad();
  return controller;
}

std::unique_ptr<WindowController> makeHelpWindowController(AppContext& app) {
  auto window = std::make_unique<ControllerWindow>();
  app.menu().attachTo(window->menuBar());
  window->resize(760, 820);  // a page's width at a readable size
  return std::make_unique<WindowController>(std::move(window), new HelpViewController(app));
}

using Factory = std::function<std::unique_ptr<WindowController>(AppContext&)>;

const std::vector<std::pair<std::string_view, Factory>>& factories() {
  static const std::vector<std::pair<std::string_view, Factory>> all = {
      {kDocumentWindowControllerId, makeDocumentWindowController},
      {kGraphWindowControllerId, makeGraphWindowController},
      {kArchWindowControllerId, makeReportWindowController<ArchViewController, 900, 560>},
      {kFieldWindowControllerId, makeFieldWindowController},
      {kPrefsWindowControllerId, makePrefsWindowController},
      {kHelpWindowControllerId, makeHelpWindowController},
      {kLogCheckWindowId, makeReportWindowController<CheckLogViewController, 620, 360>},
  };
  return all;
}

}  // namespace

std::unique_ptr<WindowController> instantiateWindowController(std::string_view identifier,
                                                              AppContext& app) {
  for (const auto& [id, factory] : factories())
    if (id == identifier) return factory(app);
  return nullptr;
}

}  // namespace kavor::app
