#include "app/shell/kv_main_window.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QMimeData>
#include <QUrl>
#include <vector>

#include "app/query/view_controller.h"
#include "engine/query/log_file.h"

namespace kavor::app {

namespace {

// The saved JSON logs among what is dragged: local files with their extension.
std::vector<std::filesystem::path> jsonLogsIn(const QMimeData* data) {
  std::vector<std::filesystem::path> files;
  if (!data || !data->hasUrls()) return files;
  for (const QUrl& url : data->urls()) {
    if (!url.isLocalFile()) continue;
    std::filesystem::path file(QFile::encodeName(url.toLocalFile()).toStdString());
    if (isJsonLogName(file)) files.push_back(std::move(file));
  }
  return files;
}

}  // namespace

KvMainWindow::KvMainWindow(QWidget* parent) : ControllerWindow(parent) {
  setAcceptDrops(true);
  connect(this, &ControllerWindow::activated, this, &KvMainWindow::becomeMainWindow);
}

void KvMainWindow::becomeMainWindow() {
  const WindowController* controller = windowController();
  if (!controller) return;
  if (auto* view = qobject_cast<ViewController*>(controller->contentViewController()))
    view->refreshViewMenu();
}

void KvMainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (!jsonLogsIn(event->mimeData()).empty()) event->acceptProposedAction();
}

void KvMainWindow::dropEvent(QDropEvent* event) {
  const std::vector<std::filesystem::path> files = jsonLogsIn(event->mimeData());
  if (files.empty()) return;
  event->acceptProposedAction();
  for (const auto& file : files)
    emit jsonLogDropped(file);
}

}  // namespace kavor::app
