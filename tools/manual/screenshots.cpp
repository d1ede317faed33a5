#include "tools/manual/screenshots.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QLineEdit>
#include <optional>

#include "app/document/app_document.h"
#include "app/document/document_controller.h"
#include "app/query/view_controller.h"
#include "app/shell/alerts.h"
#include "app/shell/app_context.h"
#include "app/shell/unattended_context.h"
#include "app/shell/window_controller.h"
#include "ui_document_window.h"

namespace kavor::manual {

namespace {

// Nobody answers a dialog here: an alert is a failure of the picture, and no file is chosen.
class NoAlerts final : public app::AlertPresenter {
 public:
  int runModal(const app::Alert& alert, QWidget*) override {
    if (!first) first = alert.message + " " + alert.informative;
    return 0;
  }
  std::optional<std::string> first;
};

QImage windowImage(const QWidget* content) {
  QCoreApplication::processEvents();
  return content->window()->grab().toImage();
}

constexpr int kRegularStyleRow = 3;  // "0hr 2g 6b 9b 4r 10": time, type, thread, process...
constexpr int kMinutesRow = 1;

}  // namespace

Expected<std::vector<Screenshot>> takeScreenshots(const std::filesystem::path& root, double now) {
  NoAlerts alerts;
  app::UnattendedContext unattended(root, now, alerts);
  app::AppContext& app = unattended.app();

  app::AppDocument* document = app.documents().newDocument();
  app::ViewController& controller = *document->viewController();
  controller.window()->resize(1000, 600);
  Ui::DocumentWindow& ui = controller.ui();
  ui.textTimePeriod->setText("-2");
  ui.popupTimeUnits->setCurrentIndex(kMinutesRow);
  ui.comboStyle->setCurrentIndex(kRegularStyleRow);
  emit ui.comboStyle->activated(kRegularStyleRow);  // as a choice of the user's
  controller.getLogButton();
  const bool fetched = app::runEventsUntil(
      [&] {
        return controller.runsInFlight() == 0 && !controller.restyling() &&
               !document->record().popSSystTypes.empty();
      },
      std::chrono::minutes(1));
  if (alerts.first) return Error{ErrorKind::io, "the fetch failed: " + *alerts.first, 0};
  if (!fetched) return Error{ErrorKind::io, "the fetch gave no chart data", 0};

  std::vector<Screenshot> shots;
  shots.push_back({"main-window.png", windowImage(&controller)});
  document->openGraphView();
  const QWidget* chart = document->windowControllers().back()->contentViewController();
  chart->window()->resize(900, 360);
  shots.push_back({"chart-window.png", windowImage(chart)});
  app.documents().closeAll();
  return shots;
}

}  // namespace kavor::manual
