#include "app/shell/check_log_view_controller.h"

#include <string>
#include <utility>

#include "app/shell/app_context.h"
#include "app/shell/background_work.h"
#include "app/shell/qt_text.h"
#include "app/shell/report_area.h"
#include "engine/shell/check_texts.h"
#include "engine/shell/log_check_report.h"
#include "engine/shell/menu_texts.h"
#include "ui_check_log_window.h"

namespace kavor::app {

CheckLogViewController::CheckLogViewController(AppContext& app, QWidget* parent)
    : QWidget(parent),
      app_(app),
      ui_(std::make_unique<Ui::CheckLogWindow>()),
      work_(std::make_unique<BackgroundWork>(app.mainThread())) {
  ui_->setupUi(this);
  output_ = std::make_unique<ReportArea>(app, *ui_->outputTextView, kLogCheckFontSizeKey,
                                         ReportArea::Face::system);
  ui_->progress->setVisible(false);
  connect(ui_->biggerButton, &QToolButton::clicked, this, &CheckLogViewController::incFontSize);
  connect(ui_->smallerButton, &QToolButton::clicked, this, &CheckLogViewController::decFontSize);
  connect(ui_->checkAgainButton, &QPushButton::clicked, this, &CheckLogViewController::runLogCheck);
  connect(work_.get(), &BackgroundWork::finished, this, [this] {
    ui_->progress->setVisible(false);
    ui_->checkAgainButton->setEnabled(true);
  });
}

CheckLogViewController::~CheckLogViewController() = default;

void CheckLogViewController::viewDidLoad() {
  output_->load();
}

void CheckLogViewController::viewDidAppear() {
  window()->setWindowTitle(qstring(kLogCheckItem));
  runLogCheck();
}

void CheckLogViewController::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  viewDidAppear();
}

double CheckLogViewController::theFontSize() const {
  return output_->theFontSize();
}

bool CheckLogViewController::isChecking() const {
  return work_->isRunning();
}

void CheckLogViewController::runLogCheck() {
  // A report on its way is as fresh as a new one would be.
  if (work_->isRunning()) return;
  output_->replaceOutputText(kReportHeading);
  ui_->progress->setVisible(true);
  ui_->checkAgainButton->setEnabled(false);
  work_->start([this](std::stop_token) {
    std::string report = logCheckReport(app_.checks());
    work_->post([this, report = std::move(report)] {
      output_->replaceOutputText(report);
      emit reportShown();
    });
  });
}

void CheckLogViewController::incFontSize() {
  output_->incFontSize();
}

void CheckLogViewController::decFontSize() {
  output_->decFontSize();
}

bool CheckLogViewController::handlesMenuCommand(MenuCommand command) const {
  return command == MenuCommand::biggerFont || command == MenuCommand::smallerFont;
}

void CheckLogViewController::performMenuCommand(MenuCommand command) {
  if (command == MenuCommand::biggerFont) incFontSize();
  if (command == MenuCommand::smallerFont) decFontSize();
}

}  // namespace kavor::app
