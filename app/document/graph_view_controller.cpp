#include "app/document/graph_view_controller.h"

#include <QBuffer>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QPixmap>
#include <QPushButton>
#include <QShowEvent>

#include "app/document/app_document.h"
#include "app/document/chart_view.h"
#include "app/shell/app_context.h"
#include "app/shell/file_panels.h"
#include "app/shell/qt_text.h"
#include "app/shell/window_controller.h"
#include "engine/core/pasteboard_date.h"
#include "engine/document/chart_data.h"
#include "engine/document/chart_layout.h"
#include "platform/file_bytes.h"
#include "ui_graph_window.h"

namespace kavor::app {

GraphViewController::GraphViewController(AppContext& app, QWidget* parent)
    : QWidget(parent), app_(app), ui_(std::make_unique<Ui::GraphWindow>()) {
  ui_->setupUi(this);
  connect(ui_->susystPopup, &QComboBox::activated, this, &GraphViewController::selectSsystPopup);
  connect(ui_->pngButton, &QPushButton::clicked, this, &GraphViewController::writePNGFile);
}

GraphViewController::~GraphViewController() = default;

AppDocument* GraphViewController::document() const {
  const WindowController* controller = windowControllerOf(this);
  return controller ? controller->document() : nullptr;
}

ChartView& GraphViewController::chartView() const {
  return *ui_->theChartView;
}

QString GraphViewController::chosenSubsystemTitle() const {
  return ui_->susystPopup->currentIndex() < 0 ? QString() : ui_->susystPopup->currentText();
}

void GraphViewController::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!event->spontaneous()) viewDidAppear();
}

void GraphViewController::viewDidAppear() {
  AppDocument* owner = document();
  if (!owner) return;
  const Document& record = owner->record();
  window()->setWindowTitle(QString::fromStdString(allSubsystemsWindowTitle(owner->displayName())));
  if (record.popSSystTypes.empty()) return;
  ui_->susystPopup->clear();
  ui_->susystPopup->addItem(qstring(kAllSubsystemsTitle));
  for (const std::string& name : record.popSSystTypes)
    ui_->susystPopup->addItem(QString::fromStdString(name));
  ui_->susystPopup->setCurrentIndex(0);
  binAndHandOver(0);
  chartView().theReturnedDate = record.startDate;
  chartView().update();
}

void GraphViewController::binAndHandOver(int64_t selection) {
  Document& record = document()->record();
  binChartData(record, selection);
  ChartView& view = chartView();
  view.logBarValue = record.logBarValue;
  view.logSSystCount = record.logSSystCount;
  view.logBarLabel = record.logBarLabel;
  view.logBarDate = record.logBarDate;
}

void GraphViewController::selectSsystPopup() {
  AppDocument* owner = document();
  if (!owner || owner->record().popSSystTypes.empty()) return;
  if (ui_->susystPopup->currentIndex() >= 0)
    window()->setWindowTitle(QString::fromStdString(
        subsystemWindowTitle(ui_->susystPopup->currentText().toStdString(), owner->displayName())));
  binAndHandOver(ui_->susystPopup->currentIndex());
  chartView().repaint();
}

void GraphViewController::increaseBins() {
  stepBins(increasedBinCount);
}

void GraphViewController::decreaseBins() {
  stepBins(decreasedBinCount);
}

void GraphViewController::stepBins(std::optional<int64_t> (*step)(int64_t)) {
  AppDocument* owner = document();
  if (!owner || owner->record().popSSystTypes.empty()) return;
  const auto count = step(owner->record().theNoBins);
  if (!count) return;
  owner->record().theNoBins = *count;
  binAndHandOver(ui_->susystPopup->currentIndex());
  chartView().repaint();
}

void GraphViewController::copy() {
  QGuiApplication::clipboard()->setText(
      QString::fromStdString(pasteboardTextFromDate(chartView().theReturnedDate)));
}

QByteArray GraphViewController::pngOfChart() {
  ChartView& view = chartView();
  view.drawString = false;
  // grab() draws at the window's device pixel ratio.
  const QPixmap image = view.grab();
  view.drawString = true;
  QByteArray png;
  QBuffer buffer(&png);
  buffer.open(QIODevice::WriteOnly);
  if (image.isNull() || !image.save(&buffer, "PNG")) return {};
  return png;
}

void GraphViewController::writePNGFile() {
  const QByteArray png = pngOfChart();
  if (png.isEmpty()) return;
  AppDocument* owner = document();
  const SavePanelRequest request{"Save as PNG file",
                                 owner ? owner->displayName() : std::string(),
                                 {{"public.png", "PNG image", "png"}},
                                 true};
  const auto choice = app_.panels().runSavePanel(request, window());
  if (!choice) return;
  // A file that cannot be written is not reported.
  (void)replaceFileDurably(choice->path, std::string_view(png.constData(), png.size()), nullptr,
                           kUserFileMode);
}

}  // namespace kavor::app
