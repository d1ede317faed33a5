#include "app/shell/window_controller.h"

#include <QCloseEvent>
#include <QEvent>

namespace kavor::app {

ControllerWindow::ControllerWindow(QWidget* parent) : QMainWindow(parent) {}

bool ControllerWindow::event(QEvent* event) {
  const bool handled = QMainWindow::event(event);
  if (event->type() == QEvent::WindowActivate) emit activated();
  return handled;
}

void ControllerWindow::closeEvent(QCloseEvent* event) {
  QMainWindow::closeEvent(event);
  if (event->isAccepted() && controller_) emit controller_->windowWillClose(controller_);
}

WindowController* windowControllerOf(const QWidget* widget) {
  const auto* window = widget ? qobject_cast<const ControllerWindow*>(widget->window()) : nullptr;
  return window ? window->windowController() : nullptr;
}

WindowController::WindowController(std::unique_ptr<ControllerWindow> window,
                                   QWidget* contentViewController)
    : window_(std::move(window)), content_(contentViewController) {
  window_->setCentralWidget(contentViewController);
  window_->setWindowController(this);
}

WindowController::~WindowController() {
  window_->setWindowController(nullptr);
}

void WindowController::showWindow() {
  window_->show();
  window_->raise();
  window_->activateWindow();
}

}  // namespace kavor::app
