#pragma once
// The stepper beside the period field: two arrow buttons that step a value within its limits.

#include <QWidget>
#include <cstdint>

class QToolButton;

namespace kavor::app {

class PeriodStepper final : public QWidget {
  Q_OBJECT

 public:
  explicit PeriodStepper(QWidget* parent = nullptr);

  int64_t value() const { return value_; }
  // Within the limits; a value outside them is clamped.
  void setValue(int64_t value);
  void setRange(int64_t minimum, int64_t maximum);
  int64_t minimum() const { return minimum_; }
  int64_t maximum() const { return maximum_; }

  // As a click on an arrow does: one increment up or down, stopping at the limits.
  void stepBy(int64_t steps);

 signals:
  // The user stepped the value (not sent by setValue).
  void stepped();

 private:
  QToolButton* up_;
  QToolButton* down_;
  int64_t value_ = 0;
  int64_t minimum_ = 0;
  int64_t maximum_ = 100;
};

}  // namespace kavor::app
