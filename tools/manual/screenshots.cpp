#include "tools/manual/screenshots.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLineEdit>
#include <QTimer>
#include <functional>
#include <optional>

#include "app/document/app_document.h"
#include "app/document/document_controller.h"
#include "app/query/view_controller.h"
#include "app/shell/alerts.h"
#include "app/shell/app_context.h"
#include "app/shell/file_panels.h"
#include "app/shell/window_controller.h"
#include "engine/shell/machine_check_system.h"
#include "platform/clock.h"
#include "platform/settings_store.h"
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

class NoPanels final : public app::FilePanels {
 public:
  std::optional<std::filesystem::path> runOpenPanel(const app::OpenPanelRequest&,
                                                    QWidget*) override {
    return std::nullopt;
  }
  std::optional<app::SaveChoice> runSavePanel(const app::SavePanelRequest&, QWidget*) override {
    return std::nullopt;
  }
};

// Lets the event loop run until the condition holds; false after a minute without it.
bool waitFor(const std::function<bool()>& condition) {
  QElapsedTimer clock;
  clock.start();
  while (!condition()) {
    if (clock.elapsed() > 60000) return false;
    QEventLoop loop;
    QTimer::singleShot(20, &loop, &QEventLoop::quit);
    loop.exec();
  }
  return true;
}

QImage windowImage(const QWidget* content) {
  QCoreApplication::processEvents();
  return content->window()->grab().toImage();
}

constexpr int kRegularStyleRow = 3;  // "0hr 2g 6b 9b 4r 10": time, type, thread, process...
constexpr int kMinutesRow = 1;

}  // namespace

Expected<std::vector<Screenshot>> takeScreenshots(const std::filesystem::path& root, double now) {
  MemorySettingsStore settings;
  const FixedClock clock(now);
  NoAlerts alerts;
  NoPanels panels;
  const SystemPaths paths(root);
  MachineCheckSystem checks(paths, clock);
  app::AppContext app({settings, paths, clock, alerts, panels, checks});

  app::AppDocument* document = app.documents().newDocument();
  app::ViewController& controller = *document->viewController();
  controller.window()->resize(1000, 600);
  Ui::DocumentWindow& ui = controller.ui();
  ui.textTimePeriod->setText("-2");
  ui.popupTimeUnits->setCurrentIndex(kMinutesRow);
  ui.comboStyle->setCurrentIndex(kRegularStyleRow);
  emit ui.comboStyle->activated(kRegularStyleRow);  // as a choice of the user's
  controller.getLogButton();
  const bool fetched = waitFor([&] {
    return controller.runsInFlight() == 0 && !controller.restyling() &&
           !document->record().popSSystTypes.empty();
  });
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
