#include "app/shell/unattended_context.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

namespace kavor::app {

std::optional<std::filesystem::path> NoPanels::runOpenPanel(const OpenPanelRequest&, QWidget*) {
  return std::nullopt;
}

std::optional<SaveChoice> NoPanels::runSavePanel(const SavePanelRequest&, QWidget*) {
  return std::nullopt;
}

UnattendedContext::UnattendedContext(const std::filesystem::path& root, double now,
                                     AlertPresenter& alerts)
    : clock_(now),
      paths_(root),
      checks_(paths_, clock_),
      app_({settings_, paths_, clock_, alerts, panels_, checks_}) {}

bool runEventsUntil(const std::function<bool()>& done, std::chrono::milliseconds limit) {
  // Wakes the loop now and then, so that a wait for more events always ends.
  QTimer tick;
  tick.start(20);
  QElapsedTimer clock;
  clock.start();
  while (!done()) {
    if (clock.elapsed() > limit.count()) return false;
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  return true;
}

}  // namespace kavor::app
