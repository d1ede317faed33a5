#pragma once
// Work of a window on a thread of its own, so that a long copy or a slow tool never holds the
// window. What the work hands back reaches the main thread after what it handed back before; a
// window that has gone takes nothing. Destroying this stops the work and waits for it.

#include <QObject>
#include <QPointer>
#include <functional>
#include <stop_token>
#include <thread>

#include "platform/main_thread.h"

namespace kavor::app {

class BackgroundWork final : public QObject {
  Q_OBJECT

 public:
  using Job = std::function<void(std::stop_token stop)>;

  explicit BackgroundWork(MainThread& main, QObject* parent = nullptr);
  ~BackgroundWork() override;

  // From start until finished() has been emitted.
  bool isRunning() const { return worker_.joinable(); }
  // Runs the job on a new thread; one job at a time.
  void start(Job job);
  // Asks the job to stop; it ends at its next check.
  void stop() { worker_.request_stop(); }
  // From the job's thread: runs f on the main thread, unless this has gone by then.
  void post(std::function<void()> f);

 signals:
  // On the main thread, once the job has returned and everything it posted has run.
  void finished();

 private:
  MainThread& main_;
  QPointer<BackgroundWork> guard_;
  std::jthread worker_;
};

}  // namespace kavor::app
