#include "app/document/document_controller.h"

#include <QApplication>
#include <QWidget>

#include "app/document/app_document.h"
#include "app/shell/alerts.h"
#include "app/shell/app_context.h"
#include "app/shell/file_panels.h"
#include "app/shell/window_controller.h"
#include "engine/document/document_errors.h"

namespace kavor::app {

DocumentController::DocumentController(AppContext& app) : app_(app) {}

DocumentController::~DocumentController() {
  for (const QPointer<AppDocument>& document : closed_)
    delete document.data();
}

AppDocument* DocumentController::newDocument() {
  auto document = std::make_unique<AppDocument>(app_);
  AppDocument* made = document.get();
  connect(made, &AppDocument::closed, this, &DocumentController::documentClosed);
  connect(made, &AppDocument::activated, this, [this](AppDocument* d) { lastActive_ = d; });
  documents_.push_back(std::move(document));
  made->makeWindowControllers();
  lastActive_ = made;
  made->showWindows();
  return made;
}

void DocumentController::openDocument() {
  QWidget* parent = QApplication::activeWindow();
  const auto path = app_.panels().runOpenPanel({"Open", false, false, false, {}, true, {}}, parent);
  if (!path) return;
  const Status read = AppDocument::readFromData({}, {});
  if (read) return;
  Alert alert{Alert::Style::warning, openFailureMessage(path->filename().string()),
              read.error().message()};
  app_.alerts().runModal(alert, parent);
}

AppDocument* DocumentController::frontDocument() const {
  if (const WindowController* controller = windowControllerOf(QApplication::activeWindow()))
    if (controller->document()) return controller->document();
  if (lastActive_) return lastActive_;
  return documents_.empty() ? nullptr : documents_.back().get();
}

ViewController* DocumentController::frontViewController() const {
  const AppDocument* document = frontDocument();
  return document ? document->viewController() : nullptr;
}

void DocumentController::closeAll() {
  // Closing removes the document from the list.
  while (!documents_.empty()) {
    AppDocument* document = documents_.back().get();
    document->close();
    if (!documents_.empty() && documents_.back().get() == document) break;
  }
}

void DocumentController::documentClosed(AppDocument* document) {
  for (auto it = documents_.begin(); it != documents_.end(); ++it) {
    if (it->get() != document) continue;
    // The close may come from inside the document's own window: delete it afterwards.
    AppDocument* closed = it->release();
    closed->deleteLater();
    documents_.erase(it);
    std::erase_if(closed_, [](const QPointer<AppDocument>& gone) { return gone.isNull(); });
    closed_.emplace_back(closed);
    return;
  }
}

}  // namespace kavor::app
