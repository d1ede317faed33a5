#include "app/shell/background_work.h"

#include <utility>

namespace kavor::app {

BackgroundWork::BackgroundWork(MainThread& main, QObject* parent)
    : QObject(parent), main_(main), guard_(this) {}

BackgroundWork::~BackgroundWork() {
  worker_.request_stop();
  if (worker_.joinable()) worker_.join();
}

void BackgroundWork::start(Job job) {
  if (isRunning()) return;
  worker_ = std::jthread([this, job = std::move(job)](std::stop_token stop) {
    job(stop);
    post([this] {
      if (worker_.joinable()) worker_.join();  // it has nothing left to do but return
      emit finished();
    });
  });
}

void BackgroundWork::post(std::function<void()> f) {
  // The guard was made on the main thread; this object is deleted there only after joining
  // the job, so the guard cannot change while the job copies it.
  main_.post([self = guard_, f = std::move(f)] {
    if (self) f();
  });
}

}  // namespace kavor::app
