#pragma once
// The main log window: whenever it becomes the active window, its controller brings the shared
// menu items that mirror its switches up to date. Saved JSON logs dropped on it are handed on,
// each to be opened in a window of its own.

#include <filesystem>

#include "app/shell/window_controller.h"

namespace kavor::app {

class KvMainWindow final : public ControllerWindow {
  Q_OBJECT

 public:
  explicit KvMainWindow(QWidget* parent = nullptr);

 signals:
  void jsonLogDropped(const std::filesystem::path& file);

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void becomeMainWindow();
};

}  // namespace kavor::app
