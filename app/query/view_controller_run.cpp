// The main window's query form and its results: the period, the source, Get Log with its run on
// the document's processing queue and its completion, restyling (on the document's queue when it
// is not quick), and CSV conversion.

#include <QComboBox>
#include <QLineEdit>
#include <QMetaObject>
#include <QTimer>
#include <chrono>

#include "app/document/app_document.h"
#include "app/query/entry_table_model.h"
#include "app/query/result_view.h"
#include "app/query/view_controller.h"
#include "app/shell/app_context.h"
#include "app/shell/app_delegate.h"
#include "app/shell/file_panels.h"
#include "app/shell/qt_text.h"
#include "engine/query/csv_conversion.h"
#include "engine/query/named_lists.h"
#include "platform/process_memory.h"
#include "ui_document_window.h"

namespace kavor::app {

namespace {

constexpr std::string_view kSourceIndicator = "\U0001F4D5";
// Long enough for a replaced result's last holders to finish, short beside a user's pause.
constexpr std::chrono::milliseconds kReleaseDelay(300);

}  // namespace

// What travels with one run from its start to its completion.
struct ViewController::Run {
  DateFormatter formatter{kQueryDatePattern};
  double startDate = 0;
};

void ViewController::stepSetPeriod() {
  settings_.theTimePeriod = ui_->periodStep->value();
  ui_->textTimePeriod->setText(QString::number(settings_.theTimePeriod));
}

void ViewController::textSetPeriod() {
  const PeriodFromText period = periodFromText(ui_->textTimePeriod->text().toStdString());
  settings_.theTimePeriod = period.theTimePeriod;
  if (period.writeBack) ui_->textTimePeriod->setText(qstring(*period.writeBack));
  ui_->periodStep->setValue(settings_.theTimePeriod);
}

void ViewController::setTheNowButton() {
  ui_->textBaseDate->setAbsoluteTime(app_.clock().now());
}

void ViewController::setLogarchiveSource() {
  const OpenPanelRequest request{"Choose a Logarchive or Log File", true, true, true,
                                 {"logarchive", "tracev3"},         true, {}};
  const auto path = app_.panels().runOpenPanel(request, window());
  if (!path) return;
  source_ = sourceFromPath(path->string());
  window()->setWindowTitle(qstring(sourceWindowTitle(path->string())));
  ui_->fileSourceIndicator->setText(qstring(kSourceIndicator));
}

void ViewController::getLogButton() {
  textSetPeriod();
  QueryInput input;
  input.theTimePeriod = settings_.theTimePeriod;
  input.unitIndex = ui_->popupTimeUnits->currentIndex();
  input.baseDate = ui_->textBaseDate->absoluteTime();
  input.predicate = predicateFromBox(settings_.comboPredicate, settings_.specPredList);
  input.source = source_;
  input.fetchInfo = settings_.fetchInfo;
  input.fetchSignposts = settings_.fetchSignposts;
  input.fetchDebug = settings_.fetchDebug;
  input.osVersion = settings_.osVersion;
  auto run = std::make_shared<Run>();
  const LogQuery query = buildLogQuery(input, run->formatter);
  theFullCmdStr_ = query.theFullCmdStr;
  startSpinner();
  AppDocument* owner = document();
  if (!owner) return;  // no document, no fetch
  owner->record().startDate = query.startDate;
  owner->record().endDate = query.endDate;
  run->startDate = query.startDate;

  if (!fetch_)
    fetch_ = std::make_unique<LogFetch>(*owner->record().processingQueue, app_.mainThread());
  // The run gets copies: a second Get Log may replace the argument list meanwhile.
  fetch_->start(app_.logTool(), theFullCmdStr_,
                [this, run](LogShowOutput&& output) { completeLogShow(std::move(output), run); });
}

void ViewController::cancelRuns() {
  if (fetch_) fetch_->cancel();
}

void ViewController::completeLogShow(LogShowOutput&& output,
                                     const std::shared_ptr<const Run>& run) {
  AppDocument* owner = document();
  if (!owner) return;
  std::string styleText;
  LogShowCompletion done =
      kavor::completeLogShow(std::move(output), owner->record(), stylerInput(styleText),
                             {run->formatter, run->startDate, app_.clock().now(),
                              app_.delegate().dontShowGraphView, true});
  if (done.alertText) {
    stopSpinner();
    showActionError(*done.alertText);
    emit logShowCompleted();
    return;
  }
  showCompletion(done, *owner);
  emit logShowCompleted();
}

void ViewController::showCompletion(LogShowCompletion& done, AppDocument& owner) {
  theNowStr_ = done.theNowStr;
  if (done.redraw) {
    window()->setWindowTitle(qstring(done.displayName));
    if (done.styleLater)
      restyle(styleRequest());
    else
      showStyled(std::move(done.styled));
  }
  if (done.queueChart) {
    // The old chart data goes when the new is in place.
    connect(&owner, &AppDocument::chartDataReady, this, &ViewController::releaseReplacedMemory,
            Qt::UniqueConnection);
    owner.computeChartData();
  }
  if (!restyling_) stopSpinner();  // else the restyle stops it when its result is shown
}

StylerInput ViewController::stylerInput(std::string& styleText) const {
  StylerInput input;
  if (const AppDocument* owner = document())
    input.entries = owner->record().theJSONDictionaries.get();
  styleText = selectedListText(settings_.comboStyle, settings_.specStyleList);
  input.styleText = styleText;
  input.filter = filterChoiceFromBox(settings_.comboFilter, settings_.specFiltList);
  input.show = {settings_.showLogEntries, settings_.showSignposts, settings_.showActivities};
  input.limitEntries = settings_.limitEntries;
  input.theLogCap = settings_.theLogCap;
  input.osVersion = settings_.osVersion;
  return input;
}

StyleRequest ViewController::styleRequest() const {
  StyleRequest request;
  request.choices = stylerInput(request.styleText);
  if (const AppDocument* owner = document()) request.entries = owner->record().theJSONDictionaries;
  request.choices.filterBudget = filterBudget_;
  return request;
}

void ViewController::restyle(StyleRequest request) {
  const uint64_t generation = supersedeRestyles();
  const StylerInput input = request.input();
  if (stylesQuickly(input)) {
    applyStyled(styleEntries(input));
    stopSpinner();
    return;
  }
  AppDocument* owner = document();
  if (!owner) return;
  request.choices.stop = restyleStop_.get_token();
  restyling_ = true;
  startSpinner();
  owner->record().processingQueue->addOperation([self = QPointer(this), generation,
                                                 &mainThread = app_.mainThread(),
                                                 request = std::move(request)] {
    // On the document's processingQueue: reads the shared entries and its own copies, nothing
    // of the window.
    auto styled = std::make_shared<StyledEntries>(styleEntries(request.input()));
    // The lines are indexed here too, so that the main thread only swaps the result in.
    auto shown = std::make_shared<ShownResult>(std::move(styled->text), std::move(styled->columns),
                                               std::move(styled->shown));
    mainThread.post([self, generation, styled, shown] {
      // A closed window has gone; something newer may be shown.
      if (!self || generation != self->restyleGeneration_) return;
      self->restyling_ = false;
      self->applyShown(std::move(*shown), *styled);
      self->stopSpinner();
    });
  });
}

uint64_t ViewController::supersedeRestyles() {
  restyleStop_.request_stop();
  restyleStop_ = std::stop_source();
  if (restyling_) {
    restyling_ = false;
    stopSpinner();
  }
  return ++restyleGeneration_;
}

void ViewController::showStyled(StyledEntries styled) {
  supersedeRestyles();
  applyStyled(std::move(styled));
}

void ViewController::applyStyled(StyledEntries styled) {
  ShownResult result(std::move(styled.text), std::move(styled.columns), std::move(styled.shown));
  applyShown(std::move(result), styled);
}

void ViewController::applyShown(ShownResult result, const StyledEntries& counts) {
  ShownResult& target = shown();
  // The views let go of the old result before it is freed.
  resultView().setResult(nullptr);
  emptyTable();
  ui_->entryDetail->clear();
  target = std::move(result);
  resultView().setResult(&target);
  fillTable();
  fitTableColumns();
  if (counts.entryCount) ui_->entryCount->setText(qstring(*counts.entryCount));
  showLineCount();
  showNotice(counts.notice);
  showLimitNotice(counts.limitNotice);
  releaseReplacedMemory();
}

void ViewController::showNotice(const std::optional<std::string>& notice) {
  ui_->resultNotice->setText(notice ? qstring(*notice) : QString());
  ui_->resultNotice->setVisible(notice.has_value());
}

void ViewController::showLineCount() {
  ui_->lineCount->setText(QString::number(shown().paragraphCount()));
}

void ViewController::refreshResults() {
  const AppDocument* owner = document();
  if (!owner || owner->record().theJSONDictionaries->empty()) return;
  startSpinner();
  // Queued, so the spinner shows before a quick styling starts.
  QMetaObject::invokeMethod(
      this,
      [this] {
        if (document())
          restyle(styleRequest());
        else
          stopSpinner();
      },
      Qt::QueuedConnection);
}

void ViewController::setStyleCombo() {
  refreshResults();
}

void ViewController::setFilterCombo() {
  refreshResults();
}

void ViewController::doConversion() {
  const AppDocument* owner = document();
  if (!owner) return;
  auto csv =
      convertToCsv(*owner->record().theJSONDictionaries, settings_.osVersion,
                   {settings_.showLogEntries, settings_.showSignposts, settings_.showActivities});
  if (!csv) return;
  supersedeRestyles();
  applyShown(ShownResult::csv(std::move(*csv)), StyledEntries{});
}

void ViewController::releaseReplacedMemory() {
  // Later, once the workers and deferred deletions have let go of the old result too; each
  // further replacement puts it off again.
  if (!releaseTimer_) {
    releaseTimer_ = new QTimer(this);
    releaseTimer_->setSingleShot(true);
    releaseTimer_->setInterval(kReleaseDelay);
    connect(releaseTimer_, &QTimer::timeout, this, [] { releaseFreeMemory(); });
  }
  releaseTimer_->start();
}

void ViewController::startSpinner() {
  ui_->progressSpinner->show();
}

void ViewController::stopSpinner() {
  ui_->progressSpinner->hide();
}

}  // namespace kavor::app
