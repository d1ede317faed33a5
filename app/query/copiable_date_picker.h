#pragma once
// The base date picker. Copy puts its date on the clipboard in the pasteboard form (seconds
// since 2001 as a decimal); paste is the window's, which reads that form back.

#include <QDateTimeEdit>

namespace kavor::app {

class CopiableDatePicker final : public QDateTimeEdit {
  Q_OBJECT

 public:
  explicit CopiableDatePicker(QWidget* parent = nullptr);

  // Seconds since 2001-01-01 00:00:00 UTC, to the millisecond.
  double absoluteTime() const;
  void setAbsoluteTime(double absoluteTime);

 public slots:
  void copy();

 signals:
  // The user asked to paste while the picker had the focus.
  void pasteRequested();

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace kavor::app
