#pragma once
// The window application's main thread: jobs posted from workers run in the Qt event loop, in
// the order posted. Jobs still queued when it is destroyed are dropped.

#include <QObject>

#include "platform/main_thread.h"

namespace kavor::app {

class QtMainThread final : public QObject, public MainThread {
  Q_OBJECT

 public:
  using QObject::QObject;
  void post(std::function<void()> job) override;
};

}  // namespace kavor::app
