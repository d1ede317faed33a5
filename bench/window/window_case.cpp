#include "bench/window/window_case.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>

#include "app/document/app_document.h"
#include "app/document/document_controller.h"
#include "app/query/result_view.h"
#include "app/query/view_controller.h"
#include "app/shell/alerts.h"
#include "app/shell/app_context.h"
#include "app/shell/app_delegate.h"
#include "app/shell/unattended_context.h"
#include "bench/window/case_report.h"
#include "engine/query/named_lists.h"
#include "platform/process_memory.h"
#include "ui_document_window.h"

namespace kavor::bench {

namespace {

using Clock = std::chrono::steady_clock;

// No fetch of the bench takes this long; one that does has gone wrong.
constexpr auto kGiveUp = std::chrono::minutes(5);
constexpr auto kIdle = std::chrono::seconds(1);

// An alert ends the case: the figures would not be of a shown result.
class FailingAlerts final : public app::AlertPresenter {
 public:
  int runModal(const app::Alert& alert, QWidget*) override {
    std::fprintf(stderr, "alert: %s %s\n", alert.message.c_str(), alert.informative.c_str());
    std::exit(1);
  }
};

// Counts the paints of the result view that came once the fetch's result was in it: the
// completion has been signalled and no restyle is still running.
class PaintWatch final : public QObject {
 public:
  explicit PaintWatch(app::ViewController& view) : view_(view) {
    QWidget* shown = &view.resultView();
    if (auto* area = qobject_cast<QAbstractScrollArea*>(shown)) shown = area->viewport();
    shown->installEventFilter(this);
    connect(&view, &app::ViewController::logShowCompleted, this, [this] { completed_ = true; });
  }
  void reset() { completed_ = resultPainted_ = false; }
  bool completed() const { return completed_; }
  bool resultPainted() const { return resultPainted_; }

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    // Delivered before the view paints: the paint is over once the event loop returns.
    if (event->type() == QEvent::Paint && completed_ && !view_.restyling()) resultPainted_ = true;
    return false;
  }

 private:
  app::ViewController& view_;
  bool completed_ = false;
  bool resultPainted_ = false;
};

// Lets the window finish its idle work, the memory it gives back among it, as it would while
// the user reads the result.
void settle() {
  QCoreApplication::processEvents();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  app::runEventsUntil([] { return false; }, kIdle);
}

void sayChoices(const app::ViewController& view) {
  for (const std::string& arg : view.theFullCmdStr())
    say("arg", arg);
  const MainSettings& settings = view.settings();
  say("style", selectedListText(settings.comboStyle, settings.specStyleList));
  say("show", std::string{settings.showLogEntries ? '1' : '0', settings.showSignposts ? '1' : '0',
                          settings.showActivities ? '1' : '0'});
  say("os", settings.osVersion);
}

}  // namespace

int runWindowCase(int argc, char** argv, const std::filesystem::path& root,
                  std::span<const int> minutes) {
  returnFreedMemoryPromptly();  // as the application's own start does
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  FailingAlerts alerts;
  app::UnattendedContext unattended(root, kWindowBaseDate, alerts);
  app::AppContext& context = unattended.app();
  app::AppDocument* document = context.documents().newDocument();
  app::ViewController& view = *document->viewController();
  if (filterChoiceFromBox(view.settings().comboFilter, view.settings().specFiltList).active) {
    std::fprintf(stderr, "the window starts with a filter\n");
    return 1;
  }
  if (view.settings().limitEntries) view.setLimit();
  settle();
  say("baseline.resident", static_cast<double>(residentMemory().current));

  PaintWatch watch(view);
  bool chartReady = false;
  QObject::connect(document, &app::AppDocument::chartDataReady, [&] { chartReady = true; });
  const int minuteUnit = static_cast<int>(
      std::find(timeUnitsList.begin(), timeUnitsList.end(), "min") - timeUnitsList.begin());
  for (size_t i = 0; i < minutes.size(); ++i) {
    view.ui().popupTimeUnits->setCurrentIndex(minuteUnit);
    view.ui().textTimePeriod->setText(QString::number(-minutes[i]));
    watch.reset();
    chartReady = false;
    const auto pressed = Clock::now();
    view.getLogButton();
    if (!app::runEventsUntil([&] { return watch.resultPainted(); }, kGiveUp)) {
      std::fprintf(stderr, "the result of fetch %zu was never painted\n", i);
      return 1;
    }
    const std::chrono::duration<double> shown = Clock::now() - pressed;
    const bool charted = !context.delegate().dontShowGraphView;
    if (charted && !app::runEventsUntil([&] { return chartReady; }, kGiveUp)) {
      std::fprintf(stderr, "the chart data of fetch %zu never came\n", i);
      return 1;
    }
    settle();
    const std::string at = "fetch" + std::to_string(i) + ".";
    const ResidentMemory memory = residentMemory();
    say(at + "entries", static_cast<double>(document->record().theJSONDictionaries->size()));
    say(at + "lines", view.ui().lineCount->text().toDouble());
    say(at + "seconds", shown.count());
    say(at + "resident", static_cast<double>(memory.current));
    say(at + "peak", static_cast<double>(memory.peak));
    if (i == 0) sayChoices(view);
  }
  return 0;
}

}  // namespace kavor::bench
