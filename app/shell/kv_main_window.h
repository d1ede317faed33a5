#pragma once
// The main log window: whenever it becomes the active window, its controller brings the shared
// menu items that mirror its switches up to date.

#include "app/shell/window_controller.h"

namespace kavor::app {

class KvMainWindow final : public ControllerWindow {
  Q_OBJECT

 public:
  explicit KvMainWindow(QWidget* parent = nullptr);

 private:
  void becomeMainWindow();
};

}  // namespace kavor::app
