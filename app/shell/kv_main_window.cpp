#include "app/shell/kv_main_window.h"

#include "app/query/view_controller.h"

namespace kavor::app {

KvMainWindow::KvMainWindow(QWidget* parent) : ControllerWindow(parent) {
  connect(this, &ControllerWindow::activated, this, &KvMainWindow::becomeMainWindow);
}

void KvMainWindow::becomeMainWindow() {
  const WindowController* controller = windowController();
  if (!controller) return;
  if (auto* view = qobject_cast<ViewController*>(controller->contentViewController()))
    view->refreshViewMenu();
}

}  // namespace kavor::app
