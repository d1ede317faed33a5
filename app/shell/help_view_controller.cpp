#include "app/shell/help_view_controller.h"

#include <QFile>
#include <QPdfDocument>
#include <QPdfPageRenderer>
#include <QPdfView>
#include <string>
#include <system_error>

#include "app/shell/app_context.h"
#include "app/shell/qt_text.h"
#include "engine/shell/menu_texts.h"
#include "ui_help_window.h"

namespace kavor::app {

std::optional<std::filesystem::path> urlForResource(const std::filesystem::path& folder,
                                                    std::string_view name,
                                                    std::string_view extension) {
  std::filesystem::path file = folder / (std::string(name) + "." + std::string(extension));
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error)) return std::nullopt;
  return file;
}

HelpViewController::HelpViewController(AppContext& app, QWidget* parent)
    : QWidget(parent), app_(app), ui_(std::make_unique<Ui::HelpWindow>()) {
  ui_->setupUi(this);
  ui_->helpPDFView->setPageMode(QPdfView::PageMode::MultiPage);
  ui_->helpPDFView->setZoomMode(QPdfView::ZoomMode::FitToWidth);
}

HelpViewController::~HelpViewController() {
  ui_->helpPDFView->setDocument(nullptr);
  // The view leaves its page renderer's thread behind when it goes; the renderer ends and deletes
  // the thread when it is told to render on the main thread.
  for (auto* renderer : ui_->helpPDFView->findChildren<QPdfPageRenderer*>())
    renderer->setRenderMode(QPdfPageRenderer::RenderMode::SingleThreaded);
}

QPdfView* HelpViewController::helpPDFView() const {
  return ui_->helpPDFView;
}

void HelpViewController::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  viewDidAppear();
}

void HelpViewController::viewDidAppear() {
  window()->setWindowTitle(qstring(kHelpItem));
  // The view lets go of the old manual before it goes.
  ui_->helpPDFView->setDocument(nullptr);
  thePDFDocument_.reset();
  const auto file =
      urlForResource(app_.resourceFolder(), kHelpResourceName, kHelpResourceExtension);
  if (!file) return;
  auto document = std::make_unique<QPdfDocument>();
  if (document->load(QFile::decodeName(file->c_str())) != QPdfDocument::Error::None) return;
  thePDFDocument_ = std::move(document);
  ui_->helpPDFView->setDocument(thePDFDocument_.get());
}

}  // namespace kavor::app
