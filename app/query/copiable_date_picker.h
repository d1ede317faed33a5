#pragma once
// The base date picker. Copy puts its date on the clipboard in the pasteboard form (seconds
// since 2001 as a decimal); paste is the window's, which reads that form back. The date is held
// as that double, so a pasted date keeps every digit; the fields show it to the second.

#include <QDateTimeEdit>

namespace kavor::app {

class CopiableDatePicker final : public QDateTimeEdit {
  Q_OBJECT

 public:
  explicit CopiableDatePicker(QWidget* parent = nullptr);

  // Seconds since 2001-01-01 00:00:00 UTC, exactly as set or pasted; editing a field changes the
  // whole seconds and keeps the fraction. A date beyond what the fields can show is clamped.
  double absoluteTime() const { return absoluteTime_; }
  void setAbsoluteTime(double absoluteTime);

 public slots:
  void copy();

 signals:
  // The user asked to paste while the picker had the focus.
  void pasteRequested();

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void fieldsEdited(const QDateTime& shown);

  double absoluteTime_ = 0;
  bool showing_ = false;  // the fields are being set from absoluteTime_
};

}  // namespace kavor::app
