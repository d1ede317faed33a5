#include "app/document/app_document.h"

#include <QPointer>
#include <QStatusBar>
#include <algorithm>

#include "app/query/result_view.h"
#include "app/query/view_controller.h"
#include "app/shell/alerts.h"
#include "app/shell/app_context.h"
#include "app/shell/file_panels.h"
#include "app/shell/main_menu.h"
#include "app/shell/qt_text.h"
#include "app/shell/window_controller.h"
#include "app/shell/window_registry.h"
#include "engine/document/chart_data.h"
#include "engine/document/document_errors.h"
#include "engine/document/document_saving.h"
#include "engine/document/rtf_writer.h"
#include "engine/shell/menu_texts.h"
#include "platform/file_bytes.h"

namespace kavor::app {

namespace {

constexpr std::string_view kUntitledName = "Untitled";

Error documentError() {
  return Error{ErrorKind::io, documentErrorDescription()};
}

// CSV only while the view shows it: the types the panel offers for what is shown.
std::vector<SaveType> saveTypes(bool csv) {
  std::vector<SaveType> types{{std::string(kPlainTextType), "Plain Text", "txt"},
                              {std::string(kRtfType), "Rich Text Format (RTF)", "rtf"}};
  if (csv) types.push_back({std::string(kCsvType), "CSV", "csv"});
  return types;
}

}  // namespace

AppDocument::AppDocument(AppContext& app) : app_(app), record_(app.clock()) {}

AppDocument::~AppDocument() = default;

void AppDocument::makeWindowControllers() {
  addWindowController(instantiateWindowController(kDocumentWindowControllerId, app_));
  // Another document's chart is not this one's: the item returns when a chart is next ready.
  app_.menu().showItem(kWindowsMenuTitle, kOpenChartItem, false);
}

void AppDocument::addWindowController(std::unique_ptr<WindowController> controller) {
  controller->setDocument(this);
  connect(controller.get(), &WindowController::windowWillClose, this,
          &AppDocument::windowWillClose);
  connect(controller->window(), &ControllerWindow::activated, this,
          [this] { emit activated(this); });
  controllers_.push_back(std::move(controller));
}

ViewController* AppDocument::viewController() const {
  if (controllers_.empty()) return nullptr;
  return qobject_cast<ViewController*>(controllers_.front()->contentViewController());
}

void AppDocument::showWindows() {
  for (const auto& controller : controllers_)
    controller->showWindow();
}

std::string AppDocument::displayName() const {
  if (!record_.displayName.empty()) return record_.displayName;
  if (fileUrl_) return fileUrl_->filename().string();
  return std::string(kUntitledName);
}

Expected<std::string> AppDocument::dataOfType(std::string_view typeName) {
  ViewController* controller = viewController();
  if (!controller) return documentError();
  const std::string trailer =
      saveTrailer(controller->theNowStr(), controller->theFullCmdStr(), record_.sourceFile);
  ShownResult& shown = record_.shown;
  if (typeName == kPlainTextType) return shown.text() + trailer;
  if (typeName == kCsvType) {
    if (!shown.isCsv()) return documentError();
    return std::string(shown.ownText());
  }
  // The trailer becomes part of what is shown, so each further styled save carries one more.
  shown.appendUnfonted(trailer);
  ResultView& view = controller->resultView();
  view.resultAppended();
  std::string rtf = rtfFromStyledText(shown.styled(), view.rtfFont(), shown.fontedLength());
  if (rtf.empty()) return documentError();
  return rtf;
}

Status AppDocument::readFromData(std::string_view, std::string_view) {
  return documentError();
}

void AppDocument::saveDocument() {
  // A CSV file is saved again only while the view still shows CSV.
  if (fileUrl_ && (fileType_ != kCsvType || record_.shown.isCsv())) {
    (void)saveTo(*fileUrl_, fileType_);
    return;
  }
  saveDocumentAs();
}

void AppDocument::saveDocumentAs() {
  QWidget* parent = controllers_.empty() ? nullptr : controllers_.front()->window();
  const bool csv = record_.shown.isCsv();
  // A log read from "x.json" proposes "x": kept as typed, its extension would make the saved
  // text pass for the JSON it came from, even replace it.
  const std::string name = record_.sourceFile ? record_.sourceFile->stem().string() : displayName();
  SavePanelRequest request{"Save As", name, saveTypes(csv), true};
  // After a conversion CSV comes first; else the type of the last save, as the panel remembers it.
  const std::string_view first = csv ? kCsvType : std::string_view(fileType_);
  const auto proposed = std::find_if(request.types.begin(), request.types.end(),
                                     [&](const SaveType& type) { return type.typeName == first; });
  if (proposed != request.types.end()) std::rotate(request.types.begin(), proposed, proposed + 1);
  const auto choice = app_.panels().runSavePanel(request, parent);
  if (!choice) return;
  (void)saveTo(choice->path, choice->typeName);
}

bool AppDocument::saveTo(const std::filesystem::path& path, const std::string& typeName) {
  ControllerWindow* parent = controllers_.empty() ? nullptr : controllers_.front()->window();
  auto data = dataOfType(typeName);
  Status written =
      data ? replaceFileDurably(path, *data, nullptr, kUserFileMode) : Status(data.error());
  if (!written) {
    Alert alert{Alert::Style::warning, saveFailureMessage(displayName()),
                written.error().message()};
    app_.alerts().runModal(alert, parent);
    return false;
  }
  fileUrl_ = path;
  fileType_ = typeName;
  if (parent) parent->statusBar()->showMessage(qstring(savedStatus(path)));
  return true;
}

void AppDocument::close() {
  if (closing_) return;
  closing_ = true;
  // The tool is ended now, so that neither closing nor quitting waits for it.
  if (ViewController* controller = viewController()) controller->cancelRuns();
  for (const auto& controller : controllers_)
    controller->window()->hide();
  emit closed(this);
}

void AppDocument::openGraphView() {
  auto controller = instantiateWindowController(kGraphWindowControllerId, app_);
  WindowController* made = controller.get();
  addWindowController(std::move(controller));
  made->showWindow();
}

void AppDocument::computeChartData() {
  const uint64_t collection = beginChartCollection(record_);
  record_.processingQueue->addOperation([self = QPointer(this), &mainThread = app_.mainThread(),
                                         entries = record_.theJSONDictionaries,
                                         start = record_.startDate, collection] {
    // On the document's processingQueue: reads only the list it holds.
    auto collected =
        std::make_shared<ChartEntries>(collectChartEntries(*entries, start, collection));
    mainThread.post([self, collected] {
      // A closed document has gone; a newer fetch's collection is the one to show.
      if (!self || !indexSubsystems(self->record_, std::move(*collected))) return;
      self->app_.menu().showItem(kWindowsMenuTitle, kOpenChartItem, true);
      emit self->chartDataReady();
    });
  });
}

void AppDocument::windowWillClose(WindowController* controller) {
  if (controllers_.empty()) return;
  if (controller == controllers_.front().get()) {
    close();
    return;
  }
  for (auto it = controllers_.begin(); it != controllers_.end(); ++it) {
    if (it->get() != controller) continue;
    // Still inside the window's own close event: delete it once that returns.
    it->release()->deleteLater();
    controllers_.erase(it);
    return;
  }
}

}  // namespace kavor::app
