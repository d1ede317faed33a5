#include "app/query/copiable_date_picker.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <cmath>

#include "engine/core/pasteboard_date.h"
#include "platform/clock.h"

namespace kavor::app {

CopiableDatePicker::CopiableDatePicker(QWidget* parent) : QDateTimeEdit(parent) {
  setDisplayFormat("yyyy-MM-dd HH:mm:ss");
  setCalendarPopup(true);
  setTimeSpec(Qt::LocalTime);
}

double CopiableDatePicker::absoluteTime() const {
  return static_cast<double>(dateTime().toMSecsSinceEpoch()) / 1000.0 - kUnixToAbsoluteTime;
}

void CopiableDatePicker::setAbsoluteTime(double absoluteTime) {
  const double ms = std::round((absoluteTime + kUnixToAbsoluteTime) * 1000.0);
  setDateTime(QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(ms), Qt::LocalTime));
}

void CopiableDatePicker::copy() {
  QGuiApplication::clipboard()->setText(
      QString::fromStdString(pasteboardTextFromDate(absoluteTime())));
}

bool CopiableDatePicker::event(QEvent* event) {
  // Copy and paste mean the date, not the text of the field: keep them from the edit behind it.
  if (event->type() == QEvent::ShortcutOverride) {
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->matches(QKeySequence::Copy) || key->matches(QKeySequence::Paste)) {
      event->accept();
      return true;
    }
  }
  return QDateTimeEdit::event(event);
}

void CopiableDatePicker::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    copy();
    return;
  }
  if (event->matches(QKeySequence::Paste)) {
    emit pasteRequested();
    return;
  }
  QDateTimeEdit::keyPressEvent(event);
}

}  // namespace kavor::app
