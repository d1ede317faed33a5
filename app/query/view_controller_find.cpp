// The main window's find bar: the shown text searched in the engine, at once when that is quick,
// else on the document's processing queue, and the matches stepped through as the result view's
// marks. In table mode the text is searched all the same and the current match's row selected.

#include <QMetaObject>
#include <QStackedWidget>
#include <QTableView>
#include <algorithm>

#include "app/document/app_document.h"
#include "app/query/find_bar.h"
#include "app/query/result_view.h"
#include "app/query/view_controller.h"
#include "app/shell/app_context.h"
#include "app/shell/qt_text.h"
#include "ui_document_window.h"

namespace kavor::app {

namespace {

// Texts up to this size are searched at once: a plain search of 1 MB takes about a millisecond.
// A regular expression always leaves the main thread, since it may be slow on any text.
constexpr size_t kQuickFindBytes = size_t{1} << 20;

}  // namespace

FindBar& ViewController::findBar() const {
  return *ui_->findBar;
}

void ViewController::setUpFind() {
  FindBar& bar = findBar();
  bar.hide();
  connect(&bar, &FindBar::queryChanged, this, &ViewController::runFind);
  connect(&bar, &FindBar::nextRequested, this, &ViewController::findNext);
  connect(&bar, &FindBar::previousRequested, this, &ViewController::findPrevious);
  connect(&bar, &FindBar::closeRequested, this, &ViewController::closeFind);
  connect(ui_->theResText, &ResultView::resultChanged, this, &ViewController::findAgainLater);
}

void ViewController::showFind() {
  const bool wasOpen = !findBar().isHidden();
  findBar().open();
  if (!wasOpen) runFind();
}

void ViewController::findNext() {
  stepFind(true);
}

void ViewController::findPrevious() {
  stepFind(false);
}

void ViewController::stepFind(bool forward) {
  if (findBar().isHidden()) {
    showFind();
    return;
  }
  const size_t count = resultView().highlights().size();
  // While a search runs, its matches are not in hand yet.
  if (finding_ || count == 0) return;
  const size_t current = resultView().currentHighlight();
  resultView().setCurrentHighlight(forward ? (current + 1) % count : (current + count - 1) % count);
  showCurrentMatch();
}

void ViewController::closeFind() {
  findStop_.request_stop();
  ++findGeneration_;
  finding_ = false;
  foundCount_ = {};
  findBar().hide();
  resultView().setHighlights({}, 0);
  ui_->resultStack->currentWidget()->setFocus();
}

void ViewController::findAgainLater() {
  // Offsets into the old text mean nothing in the new one.
  findStop_.request_stop();
  ++findGeneration_;
  // An open bar's matches are due again.
  finding_ = !findBar().isHidden();
  if (!finding_ || findAgainQueued_) return;
  // Queued: a replaced result lets go of the view before the new one is in place.
  findAgainQueued_ = true;
  QMetaObject::invokeMethod(
      this,
      [this] {
        findAgainQueued_ = false;
        if (!findBar().isHidden()) runFind();
      },
      Qt::QueuedConnection);
}

void ViewController::runFind() {
  findStop_.request_stop();
  findStop_ = std::stop_source();
  const uint64_t generation = ++findGeneration_;
  finding_ = false;
  TextQuery query = findBar().query();
  if (query.text.empty()) {
    foundCount_ = {};
    resultView().setHighlights({}, 0);
    findBar().setStatus({});
    return;
  }
  const std::string& text = shown().text();
  AppDocument* owner = document();
  if (!owner || (text.size() <= kQuickFindBytes && !query.regularExpression)) {
    showFound(findInText(text, query));
    return;
  }
  finding_ = true;
  findBar().setStatus(tr("Searching\u2026"));
  owner->record().processingQueue->addOperation(
      [self = QPointer(this), generation, &mainThread = app_.mainThread(),
       text = shown().sharedStyled(), query = std::move(query), stop = findStop_.get_token()] {
        // On the document's processingQueue: reads the text as it was, which a save's trailer
        // appended meanwhile leaves alone, and nothing else.
        auto found = std::make_shared<Expected<TextMatches>>(findInText(text->text, query, stop));
        if (stop.stop_requested()) return;
        mainThread.post([self, generation, found] {
          // A closed window has gone; a newer search may have begun.
          if (!self || generation != self->findGeneration_) return;
          self->finding_ = false;
          self->showFound(std::move(*found));
        });
      });
}

void ViewController::showFound(Expected<TextMatches> found) {
  if (!found) {
    foundCount_ = {};
    resultView().setHighlights({}, 0);
    findBar().setStatus(qstring(findErrorText(found.error())), true);
    return;
  }
  foundCount_ = found->count;
  // The first match from the selection on, so that typing on keeps the match in hand.
  std::vector<TextRange>& ranges = found->ranges;
  const size_t from = resultView().selection().first;
  const auto after = std::lower_bound(ranges.begin(), ranges.end(), from,
                                      [](const TextRange& r, size_t at) { return r.first < at; });
  const auto current = after == ranges.end() ? 0 : static_cast<size_t>(after - ranges.begin());
  resultView().setHighlights(std::move(ranges), current);
  showCurrentMatch();
}

void ViewController::showCurrentMatch() {
  const std::vector<TextRange>& ranges = resultView().highlights();
  if (ranges.empty()) {
    findBar().setStatus(qstring(findStatusText(foundCount_, std::nullopt)));
    return;
  }
  const size_t current = resultView().currentHighlight();
  resultView().select(ranges[current]);
  if (tableMode_)
    if (const auto row = shown().shownAt(ranges[current].first))
      ui_->resultTable->selectRow(static_cast<int>(*row));
  findBar().setStatus(qstring(findStatusText(foundCount_, current)));
}

}  // namespace kavor::app
