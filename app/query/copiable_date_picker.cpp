#include "app/query/copiable_date_picker.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <algorithm>
#include <cmath>

#include "engine/core/pasteboard_date.h"
#include "platform/clock.h"

namespace kavor::app {

CopiableDatePicker::CopiableDatePicker(QWidget* parent) : QDateTimeEdit(parent) {
  setDisplayFormat("yyyy-MM-dd HH:mm:ss");
  setCalendarPopup(true);
  setTimeSpec(Qt::LocalTime);
  connect(this, &QDateTimeEdit::dateTimeChanged, this, &CopiableDatePicker::fieldsEdited);
  setAbsoluteTime(absoluteTime_);
}

void CopiableDatePicker::setAbsoluteTime(double absoluteTime) {
  const double least = static_cast<double>(minimumDateTime().toSecsSinceEpoch());
  const double most = static_cast<double>(maximumDateTime().toSecsSinceEpoch());
  const double unix = absoluteTime + kUnixToAbsoluteTime;
  // What the fields cannot show is not held either, so that copy gives what is shown.
  absoluteTime_ =
      unix >= least && unix <= most
          ? absoluteTime
          : std::clamp(std::isnan(unix) ? least : unix, least, most) - kUnixToAbsoluteTime;
  showing_ = true;
  setDateTime(QDateTime::fromSecsSinceEpoch(
      static_cast<qint64>(std::floor(absoluteTime_ + kUnixToAbsoluteTime)), Qt::LocalTime));
  showing_ = false;
}

void CopiableDatePicker::fieldsEdited(const QDateTime& shown) {
  if (showing_) return;
  const double fraction = absoluteTime_ - std::floor(absoluteTime_);
  absoluteTime_ = static_cast<double>(shown.toSecsSinceEpoch()) - kUnixToAbsoluteTime + fraction;
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
