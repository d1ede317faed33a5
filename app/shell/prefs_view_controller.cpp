#include "app/shell/prefs_view_controller.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>

#include "app/shell/app_context.h"
#include "app/shell/qt_text.h"
#include "engine/query/prefs_texts.h"
#include "ui_prefs_window.h"

namespace kavor::app {

PrefsViewController::PrefsViewController(AppContext& app, QWidget* parent)
    : QWidget(parent), app_(app), ui_(std::make_unique<Ui::PrefsWindow>()) {
  ui_->setupUi(this);
  connectGroup(PrefsList::predicates, ui_->buttonPredAdd, ui_->buttonPredChange,
               ui_->buttonPredRemove);
  connectGroup(PrefsList::styles, ui_->buttonStyleAdd, ui_->buttonStyleChange,
               ui_->buttonStyleRemove);
  connectGroup(PrefsList::filters, ui_->buttonFilterAdd, ui_->buttonFilterChange,
               ui_->buttonFilterRemove);
  connect(ui_->buttonResetAllPrefs, &QPushButton::clicked, this,
          &PrefsViewController::buttonResetAllPrefs);
}

PrefsViewController::~PrefsViewController() = default;

void PrefsViewController::connectGroup(PrefsList which, QPushButton* add, QPushButton* change,
                                       QPushButton* remove) {
  // Activated, not index-changed: choosing the item already chosen ("New…" twice) still counts.
  connect(group(which).popup, &QComboBox::activated, this, [this, which](int position) {
    editor_->choose(which, position, shownFields(which));
    showGroup(which);
  });
  connect(add, &QPushButton::clicked, this, [this, which] {
    editor_->add(which, shownFields(which));
    showGroup(which);
  });
  connect(change, &QPushButton::clicked, this, [this, which] {
    editor_->change(which, shownFields(which));
    showGroup(which);
  });
  connect(remove, &QPushButton::clicked, this, [this, which] {
    editor_->remove(which, shownFields(which));
    showGroup(which);
  });
}

PrefsViewController::Group PrefsViewController::group(PrefsList which) const {
  switch (which) {
    case PrefsList::predicates:
      return {ui_->popupPredList, ui_->textPredName, ui_->textPredPred};
    case PrefsList::styles:
      return {ui_->popupStyleList, ui_->textStyleName, ui_->textStyleStyle};
    case PrefsList::filters:
      break;
  }
  return {ui_->popupFilterList, ui_->textFilterName, ui_->textFilterFilter};
}

PrefsFields PrefsViewController::shownFields(PrefsList which) const {
  const Group g = group(which);
  return {g.name->text().toStdString(), g.text->text().toStdString()};
}

void PrefsViewController::showGroup(PrefsList which) {
  const Group g = group(which);
  const PrefsGroup shown = editor_->group(which);
  const QSignalBlocker quiet(g.popup);
  g.popup->clear();
  for (const std::string& item : shown.popupItems)
    g.popup->addItem(qstring(item));
  g.popup->setCurrentIndex(static_cast<int>(shown.selectedItem));
  g.name->setText(qstring(shown.fields.name));
  g.text->setText(qstring(shown.fields.text));
}

void PrefsViewController::showAll() {
  for (PrefsList which : kPrefsLists)
    showGroup(which);
  ui_->checkboxReplaceOnImport->setChecked(editor_->replaceOnImport());
  ui_->theLogLimitText->setText(qstring(editor_->logLimitText()));
}

void PrefsViewController::viewDidLoad() {
  editor_ = std::make_unique<PrefsEditor>(app_.settings(), app_.osVersion());
  showAll();
}

void PrefsViewController::viewDidAppear() {
  window()->setWindowTitle(qstring(kPrefsWindowTitle));
  stored_ = false;
}

void PrefsViewController::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  viewDidAppear();
}

void PrefsViewController::viewWillDisappear() {
  if (stored_) return;
  stored_ = true;
  app_.reportSettings(editor_->storeOnClose(ui_->checkboxReplaceOnImport->isChecked(),
                                            ui_->theLogLimitText->text().toStdString()),
                      window());
}

void PrefsViewController::buttonResetAllPrefs() {
  app_.reportSettings(editor_->resetAllPrefs(), window());
  showAll();
}

}  // namespace kavor::app
