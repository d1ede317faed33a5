#include "app/query/view_controller.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QShowEvent>
#include <algorithm>

#include "app/document/app_document.h"
#include "app/query/result_view.h"
#include "app/shell/alerts.h"
#include "app/shell/app_context.h"
#include "app/shell/file_panels.h"
#include "app/shell/main_menu.h"
#include "app/shell/qt_text.h"
#include "app/shell/report_area.h"
#include "app/shell/window_controller.h"
#include "engine/core/pasteboard_date.h"
#include "engine/query/log_collection.h"
#include "engine/query/main_settings_store.h"
#include "engine/query/view_menu.h"
#include "engine/shell/menu_texts.h"
#include "platform/child_process.h"
#include "ui_document_window.h"

namespace kavor::app {

namespace {

constexpr std::string_view kNoEntriesText = "0 logs";
constexpr std::string_view kNoLinesText = "0 lines";

}  // namespace

ViewController::ViewController(AppContext& app, QWidget* parent)
    : QWidget(parent), app_(app), ui_(std::make_unique<Ui::DocumentWindow>()) {
  ui_->setupUi(this);
  ui_->periodStep->setRange(kSmallestTimePeriod, kLargestTimePeriod);
  ui_->periodStep->setValue(settings_.theTimePeriod);
  for (QComboBox* box : {ui_->comboPredicate, ui_->comboFilter, ui_->comboStyle})
    box->setCompleter(nullptr);  // completion would change what the user typed
  ui_->resultNotice->hide();
  setUpNotices();
  connectControls();
  connectResultViews();
  setUpFind();
}

// A restyle or search still running ends at once instead of spending its time on a closed
// window.
ViewController::~ViewController() {
  restyleStop_.request_stop();
  findStop_.request_stop();
}

ResultView& ViewController::resultView() const {
  return *ui_->theResText;
}

ShownResult& ViewController::shown() {
  AppDocument* owner = document();
  return owner ? owner->record().shown : noResult_;
}

AppDocument* ViewController::document() const {
  const WindowController* controller = windowControllerOf(this);
  return controller ? controller->document() : nullptr;
}

void ViewController::connectControls() {
  connect(ui_->periodStep, &PeriodStepper::stepped, this, &ViewController::stepSetPeriod);
  connect(ui_->textTimePeriod, &QLineEdit::editingFinished, this, &ViewController::textSetPeriod);
  connect(ui_->textTimePeriod, &QLineEdit::returnPressed, this, &ViewController::getLogButton);
  connect(ui_->popupTimeUnits, &QComboBox::activated, this, [this](int index) {
    settings_.timeUnitIndex = index;
    settings_.theTimeSelStr = ui_->popupTimeUnits->currentText().toStdString();
  });
  connect(ui_->nowButton, &QPushButton::clicked, this, &ViewController::setTheNowButton);
  connect(ui_->getLogButton, &QPushButton::clicked, this, &ViewController::getLogButton);
  connect(ui_->textBaseDate, &CopiableDatePicker::pasteRequested, this, &ViewController::paste);
  connectComboBox(ui_->comboPredicate, settings_.comboPredicate, nullptr);
  connectComboBox(ui_->comboFilter, settings_.comboFilter, &ViewController::setFilterCombo);
  connectComboBox(ui_->comboStyle, settings_.comboStyle, &ViewController::setStyleCombo);
}

// The box and its model move together: a picked row selects it, typing deselects and shows the
// text, and both a pick and Return run the box's action.
void ViewController::connectComboBox(QComboBox* box, ComboBoxModel& model,
                                     void (ViewController::*action)()) {
  connect(box, &QComboBox::activated, this, [this, &model, action](int index) {
    if (showingBoxes_) return;
    model.selectItem(index);
    if (action) (this->*action)();
  });
  connect(box->lineEdit(), &QLineEdit::textEdited, this, [this, &model](const QString& text) {
    if (!showingBoxes_) model.typeText(text.toStdString());
  });
  connect(box->lineEdit(), &QLineEdit::returnPressed, this, [this, &model, action] {
    if (!showingBoxes_ && model.selectedIndex() < 0 && action) (this->*action)();
  });
}

void ViewController::showComboBox(QComboBox* box, const ComboBoxModel& model) {
  box->clear();
  for (const std::string& name : model.items())
    box->addItem(qstring(name));
  box->setCurrentIndex(static_cast<int>(model.selectedIndex()));
  if (model.selectedIndex() < 0) box->setEditText(qstring(model.displayedString()));
}

void ViewController::showComboBoxes() {
  showingBoxes_ = true;
  showComboBox(ui_->comboPredicate, settings_.comboPredicate);
  showComboBox(ui_->comboFilter, settings_.comboFilter);
  showComboBox(ui_->comboStyle, settings_.comboStyle);
  showingBoxes_ = false;
}

void ViewController::viewDidLoad() {
  app_.reportSettings(loadMainSettingsAtStart(settings_, app_.settings(), app_.osVersion()),
                      window());
  ui_->progressSpinner->hide();
  ui_->popupTimeUnits->clear();
  for (std::string_view unit : timeUnitsList)
    ui_->popupTimeUnits->addItem(qstring(unit));
  ui_->popupTimeUnits->setCurrentIndex(static_cast<int>(settings_.timeUnitIndex));
  settings_.theTimeSelStr = ui_->popupTimeUnits->currentText().toStdString();
  showComboBoxes();
  ui_->periodStep->setValue(settings_.theTimePeriod);
  settings_.theTimePeriod = ui_->periodStep->value();
  ui_->textBaseDate->setAbsoluteTime(app_.clock().now());
  customsChanged_ = observeCustomsChanged(settings_, app_.settings(), [this] { showComboBoxes(); });
  applyFontSize();
}

void ViewController::viewDidAppear() {
  window()->setWindowTitle(qstring(kApplicationName));
  myViewMenu_ = app_.menu().menuTitled(kViewMenuTitle);
  refreshViewMenu();
  if (settings_.osVersion < kFirstSignpostOsVersion) {
    settings_.showSignposts = false;
    settings_.fetchSignposts = false;
  }
  ui_->entryCount->setText(qstring(kNoEntriesText));
  ui_->lineCount->setText(qstring(kNoLinesText));
  ui_->fileSourceIndicator->setText({});
  settings_.theTimePeriod = ui_->periodStep->value();
  ui_->textTimePeriod->setText(QString::number(settings_.theTimePeriod));
}

void ViewController::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  // The window system's own show events (a window restored) are not an appearance.
  if (!event->spontaneous()) viewDidAppear();
}

void ViewController::refreshViewMenu() {
  if (!myViewMenu_) return;
  if (QAction* item = MainMenu::itemTitled(myViewMenu_, kShowAsTableItem))
    item->setChecked(tableMode_);
  for (const ViewMenuItemState& state : viewMenuStates(settings_)) {
    QAction* item = MainMenu::itemTitled(myViewMenu_, state.title);
    if (!item) continue;
    item->setChecked(state.checked);
    item->setVisible(!state.hidden);
    item->setEnabled(state.enabled);
  }
}

void ViewController::flip(bool& setting, bool restyle) {
  setting = !setting;
  refreshViewMenu();
  if (restyle) refreshResults();
}

void ViewController::setLimit() {
  flip(settings_.limitEntries, true);
}
void ViewController::setShowLogEntries() {
  flip(settings_.showLogEntries, true);
}
void ViewController::setShowSignposts() {
  flip(settings_.showSignposts, true);
}
void ViewController::setShowActivities() {
  flip(settings_.showActivities, true);
}
// The fetch switches take effect at the next Get Log.
void ViewController::setFetchInfo() {
  flip(settings_.fetchInfo, false);
}
void ViewController::setFetchSignposts() {
  flip(settings_.fetchSignposts, false);
}
void ViewController::setFetchDebug() {
  flip(settings_.fetchDebug, false);
}

void ViewController::incFontSize() {
  app_.reportSettings(stepFontSize(settings_, app_.settings(), 1), window());
  applyFontSize();
}

void ViewController::decFontSize() {
  app_.reportSettings(stepFontSize(settings_, app_.settings(), -1), window());
  applyFontSize();
}

void ViewController::applyFontSize() {
  shown().fontAll();
  resultView().applyFont(outputFont(settings_.theFontSize));
  ui_->resultTable->setFont(outputFont(settings_.theFontSize));
  resetRowHeader();  // rows as high as the new font
  showLineCount();
}

void ViewController::paste() {
  const QString text = QGuiApplication::clipboard()->text();
  if (const auto date = dateFromPasteboardText(text.toStdString()))
    ui_->textBaseDate->setAbsoluteTime(*date);
}

void ViewController::cmdMakeLog() {
  const SavePanelRequest request{
      "Make Logarchive", "", {{"com.apple.logarchive", "Log archive", "logarchive"}}, true};
  const auto choice = app_.panels().runSavePanel(request, window());
  if (!choice) return;
  settings_.theTimeSelStr = ui_->popupTimeUnits->currentText().toStdString();
  const std::string span = collectionSpan(settings_.theTimePeriod, settings_.theTimeSelStr);
  const CollectLaunch launch =
      collectLaunch(app_.privilegeMeans(), app_.logTool(), choice->path.string(), span);
  // The collection holds the window until it ends; its outcome is not reported.
  QApplication::setOverrideCursor(Qt::WaitCursor);
  StringSink output;
  (void)runChildProcess(launch.program, launch.arguments, output);
  QApplication::restoreOverrideCursor();
}

void ViewController::doSaveDefaults() {
  settings_.timeUnitIndex = ui_->popupTimeUnits->currentIndex();
  app_.reportSettings(kavor::doSaveDefaults(settings_, app_.settings()), window());
}

void ViewController::loadCusMenu() {
  kavor::loadCusMenu(settings_, app_.settings());
  showComboBoxes();
}

void ViewController::showActionError(const std::string& text) {
  app_.alerts().runModal({Alert::Style::critical, std::string(kActionErrorMessage), text, {"OK"}},
                         window());
}

}  // namespace kavor::app
