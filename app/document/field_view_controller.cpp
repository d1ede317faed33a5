#include "app/document/field_view_controller.h"

#include "app/shell/app_context.h"
#include "app/shell/qt_text.h"
#include "engine/core/field_table.h"
#include "engine/shell/menu_texts.h"
#include "ui_field_window.h"

namespace kavor::app {

FieldViewController::FieldViewController(AppContext& app, QWidget* parent)
    : QWidget(parent), app_(app), ui_(std::make_unique<Ui::FieldWindow>()) {
  ui_->setupUi(this);
}

FieldViewController::~FieldViewController() = default;

void FieldViewController::viewDidLoad() {
  osVersion_ = app_.osVersion();
  theKeys_ = fieldListLines(static_cast<int>(osVersion_));
  std::string text;
  for (const std::string& line : theKeys_)
    text += (text.empty() ? "" : "\n") + line;
  ui_->FieldTextbox->setText(qstring(text));
}

void FieldViewController::viewDidAppear() {
  window()->setWindowTitle(qstring(kLogFieldsItem));
  const int taller = fieldWindowGrowth(static_cast<int>(osVersion_));
  if (taller > 0) window()->resize(window()->width(), window()->height() + taller);
}

void FieldViewController::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  viewDidAppear();
}

}  // namespace kavor::app
