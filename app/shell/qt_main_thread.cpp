#include "app/shell/qt_main_thread.h"

#include <QMetaObject>

namespace kavor::app {

void QtMainThread::post(std::function<void()> job) {
  QMetaObject::invokeMethod(this, std::move(job), Qt::QueuedConnection);
}

}  // namespace kavor::app
