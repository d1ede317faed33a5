#include "app/query/period_stepper.h"

#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

namespace kavor::app {

PeriodStepper::PeriodStepper(QWidget* parent)
    : QWidget(parent), up_(new QToolButton(this)), down_(new QToolButton(this)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  for (QToolButton* button : {up_, down_}) {
    button->setAutoRepeat(true);
    button->setFixedSize(18, 12);
    button->setFocusPolicy(Qt::NoFocus);
    layout->addWidget(button);
  }
  up_->setArrowType(Qt::UpArrow);
  down_->setArrowType(Qt::DownArrow);
  up_->setToolTip(tr("One more"));
  down_->setToolTip(tr("One fewer"));
  connect(up_, &QToolButton::clicked, this, [this] { stepBy(1); });
  connect(down_, &QToolButton::clicked, this, [this] { stepBy(-1); });
}

void PeriodStepper::setValue(int64_t value) {
  value_ = std::clamp(value, minimum_, maximum_);
}

void PeriodStepper::setRange(int64_t minimum, int64_t maximum) {
  minimum_ = minimum;
  maximum_ = std::max(minimum, maximum);
  setValue(value_);
}

void PeriodStepper::stepBy(int64_t steps) {
  setValue(value_ + steps);
  emit stepped();
}

}  // namespace kavor::app
