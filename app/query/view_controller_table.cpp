// The main window's two ways of showing the results, text and table, and the detail pane that
// shows one entry whole from either.

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QTableView>
#include <algorithm>

#include "app/document/app_document.h"
#include "app/query/entry_detail_view.h"
#include "app/query/entry_table_model.h"
#include "app/query/result_view.h"
#include "app/query/view_controller.h"
#include "app/shell/colour_scheme.h"
#include "ui_document_window.h"

namespace kavor::app {

namespace {

// Columns are fitted to the first rows on screen, at most this many: a screenful's cost, never
// the whole result's.
constexpr int kFittedRows = 200;

}  // namespace

void ViewController::connectResultViews() {
  tableModel_ = new EntryTableModel(this);
  QTableView* table = ui_->resultTable;
  table->setModel(tableModel_);
  tableModel_->setDarkColours(prefersDarkColours(table->palette()));
  table->setSelectionBehavior(QAbstractItemView::SelectRows);
  table->setSelectionMode(QAbstractItemView::SingleSelection);
  table->setWordWrap(false);
  table->setShowGrid(false);
  resetRowHeader();
  table->horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
  table->horizontalHeader()->setStretchLastSection(true);
  table->horizontalHeader()->setResizeContentsPrecision(kFittedRows);
  connect(table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& current) {
            if (current.isValid()) showEntryDetail(static_cast<size_t>(current.row()));
          });
  connect(ui_->theResText, &ResultView::lineActivated, this, &ViewController::showDetailAt);
}

void ViewController::resetRowHeader() {
  QTableView* table = ui_->resultTable;
  // A new header, since the old one keeps the room of its largest row count.
  auto* rows = new QHeaderView(Qt::Vertical, table);
  // Fixed row heights keep a million rows as quick as a hundred.
  rows->setSectionResizeMode(QHeaderView::Fixed);
  rows->setDefaultSectionSize(table->fontMetrics().lineSpacing() + 4);
  table->setVerticalHeader(rows);
}

void ViewController::emptyTable() {
  const bool hadRows = tableModel_->rowCount() > 0;
  tableModel_->setResult(nullptr, nullptr);
  if (hadRows) resetRowHeader();
}

void ViewController::fillTable() {
  const AppDocument* owner = document();
  emptyTable();
  tableModel_->setDarkColours(prefersDarkColours(ui_->resultTable->palette()));
  if (tableMode_ && owner) tableModel_->setResult(owner->record().theJSONDictionaries, &shown());
}

void ViewController::setTableMode() {
  tableMode_ = !tableMode_;
  fillTable();
  ui_->resultStack->setCurrentWidget(tableMode_ ? static_cast<QWidget*>(ui_->resultTable)
                                                : ui_->theResText);
  ui_->resultStack->currentWidget()->setFocus();
  fitTableColumns();
  refreshViewMenu();
}

void ViewController::fitTableColumns() {
  if (!tableMode_) return;
  QTableView* table = ui_->resultTable;
  // The last column keeps stretching to the edge; a long message must not push the others off
  // screen, though the user may widen them.
  const int widest = std::max(table->viewport()->width() / 2, 200);
  for (int column = 0; column + 1 < tableModel_->columnCount(); ++column) {
    table->resizeColumnToContents(column);
    if (table->columnWidth(column) > widest) table->setColumnWidth(column, widest);
  }
}

void ViewController::showEntryDetail(size_t shownIndex) {
  const AppDocument* owner = document();
  const ShownResult& result = shown();
  if (!owner || shownIndex >= result.shown().size()) return;
  const size_t entry = result.shown()[shownIndex].entry;
  ui_->entryDetail->showEntry(*owner->record().theJSONDictionaries, entry,
                              tr("Entry %1 of %2").arg(shownIndex + 1).arg(result.shown().size()));
}

void ViewController::showDetailAt(size_t textOffset) {
  if (const auto shownIndex = shown().shownAt(textOffset)) showEntryDetail(*shownIndex);
}

}  // namespace kavor::app
