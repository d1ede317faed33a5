#include "app/query/find_bar.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QStyle>
#include <QToolButton>

#include "app/shell/colour_scheme.h"
#include "engine/core/text_colours.h"

namespace kavor::app {

namespace {

QToolButton* toolButton(QWidget* parent, QStyle::StandardPixmap icon, const QString& tip) {
  auto* button = new QToolButton(parent);
  button->setIcon(parent->style()->standardIcon(icon));
  button->setToolTip(tip);
  button->setAccessibleName(tip);
  button->setAutoRaise(true);
  return button;
}

}  // namespace

FindBar::FindBar(QWidget* parent)
    : QWidget(parent),
      field_(new QLineEdit(this)),
      matchCase_(new QCheckBox(tr("Match &Case"), this)),
      regularExpression_(new QCheckBox(tr("&Regular Expression"), this)),
      status_(new QLabel(this)),
      previous_(toolButton(this, QStyle::SP_ArrowUp, tr("Previous Match (Shift+F3)"))),
      next_(toolButton(this, QStyle::SP_ArrowDown, tr("Next Match (F3)"))),
      close_(toolButton(this, QStyle::SP_TitleBarCloseButton, tr("Close (Escape)"))) {
  field_->setPlaceholderText(tr("Find"));
  field_->setClearButtonEnabled(true);
  field_->installEventFilter(this);
  // The switches and buttons leave the focus in the field, so that typing goes on there; the
  // keyboard reaches them by their mnemonics and keys.
  for (QWidget* control :
       std::initializer_list<QWidget*>{matchCase_, regularExpression_, previous_, next_, close_})
    control->setFocusPolicy(Qt::NoFocus);
  status_->setMinimumWidth(status_->fontMetrics().horizontalAdvance(QStringLiteral("0")) * 16);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 2, 0, 2);
  row->addWidget(field_, 1);
  row->addWidget(matchCase_);
  row->addWidget(regularExpression_);
  row->addWidget(status_);
  row->addWidget(previous_);
  row->addWidget(next_);
  row->addWidget(close_);
  connect(field_, &QLineEdit::textChanged, this, &FindBar::queryChanged);
  connect(matchCase_, &QCheckBox::toggled, this, &FindBar::queryChanged);
  connect(regularExpression_, &QCheckBox::toggled, this, &FindBar::queryChanged);
  connect(previous_, &QToolButton::clicked, this, &FindBar::previousRequested);
  connect(next_, &QToolButton::clicked, this, &FindBar::nextRequested);
  connect(close_, &QToolButton::clicked, this, &FindBar::closeRequested);
}

TextQuery FindBar::query() const {
  return {
      field_->text().toStdString(), matchCase_->isChecked(), regularExpression_->isChecked(), {}};
}

void FindBar::open() {
  show();
  field_->setFocus(Qt::ShortcutFocusReason);
  field_->selectAll();
}

void FindBar::setStatus(const QString& text, bool problem) {
  status_->setText(text);
  // A problem in the result's readable red, light or dark as the desktop is.
  QPalette colours = palette();
  if (problem) {
    const Rgb red = colourValue(TextColour::red, prefersDarkColours(colours));
    colours.setColor(QPalette::WindowText, QColor(red.red, red.green, red.blue));
  }
  status_->setPalette(colours);
}

bool FindBar::stepKey(const QKeyEvent* event) {
  const Qt::KeyboardModifiers mods =
      event->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
  const bool shift = mods.testFlag(Qt::ShiftModifier);
  const int key = event->key();
  const bool enter =
      (key == Qt::Key_Return || key == Qt::Key_Enter) && (mods & ~Qt::ShiftModifier) == 0;
  const bool f3 = key == Qt::Key_F3 && (mods & ~Qt::ShiftModifier) == 0;
  // Ctrl+Shift+G is also a menu key elsewhere; in the field it steps back as find bars do.
  const bool g = key == Qt::Key_G && (mods & ~Qt::ShiftModifier) == Qt::ControlModifier;
  if (!enter && !f3 && !g) return false;
  if (event->type() == QEvent::KeyPress) emit shift ? previousRequested() : nextRequested();
  return true;
}

bool FindBar::eventFilter(QObject* watched, QEvent* event) {
  if (watched == field_ &&
      (event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride)) {
    auto* key = static_cast<QKeyEvent*>(event);
    // Claimed before any shortcut can take it; its press then steps.
    if (stepKey(key)) {
      event->accept();
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

// Escape anywhere in the bar; its controls leave it to their parent.
void FindBar::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
    emit closeRequested();
    return;
  }
  QWidget::keyPressEvent(event);
}

}  // namespace kavor::app
