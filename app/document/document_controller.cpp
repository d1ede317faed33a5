#include "app/document/document_controller.h"

#include <QApplication>
#include <QWidget>

#include "app/document/app_document.h"
#include "app/query/view_controller.h"
#include "app/shell/alerts.h"
#include "app/shell/app_context.h"
#include "app/shell/file_panels.h"
#include "app/shell/window_controller.h"
#include "engine/document/document_errors.h"
#include "engine/query/log_file.h"
#include "engine/shell/menu_texts.h"
#include "platform/operation_queue.h"

namespace kavor::app {

DocumentController::DocumentController(AppContext& app) : app_(app) {}

DocumentController::~DocumentController() {
  stopOpens_.request_stop();
  openQueue_.reset();
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

void DocumentController::chooseJsonLog() {
  OpenPanelRequest request;
  request.title = std::string(kOpenJsonLogItem);
  request.allowedExtensions = {"json"};
  if (const auto path = app_.panels().runOpenPanel(request, QApplication::activeWindow()))
    openJsonLog(*path);
}

void DocumentController::openJsonLog(const std::filesystem::path& path) {
  if (!openQueue_) openQueue_ = std::make_unique<OperationQueue>(1);
  ++opensInFlight_;
  openQueue_->addOperation([self = QPointer(this), &mainThread = app_.mainThread(), path,
                            stop = stopOpens_.get_token()] {
    // On the open queue: reads the file and nothing else.
    auto opened = std::make_shared<OpenedLogFile>(readLogFile(path, stop));
    mainThread.post([self, opened] {
      if (self) self->finishJsonLog(std::move(*opened));
    });
  });
}

void DocumentController::openAtLaunch(const std::vector<std::filesystem::path>& files) {
  windowIfNoneOpens_ = true;
  for (const auto& file : files)
    openJsonLog(file);
  if (files.empty()) newDocument();
}

void DocumentController::finishJsonLog(OpenedLogFile&& opened) {
  --opensInFlight_;
  if (opened.entries) {
    newDocument()->viewController()->showOpenedLog(std::move(opened));
  } else {
    Alert alert{Alert::Style::warning, openFailureMessage(opened.path.filename().string()),
                opened.entries.error().message()};
    app_.alerts().runModal(alert, QApplication::activeWindow());
  }
  if (windowIfNoneOpens_ && opensInFlight_ == 0) {
    windowIfNoneOpens_ = false;
    if (documents_.empty()) newDocument();
  }
  emit jsonLogOpenEnded();
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
