#include "app/query/entry_detail_view.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "app/shell/qt_text.h"

namespace kavor::app {

EntryDetailView::EntryDetailView(QWidget* parent)
    : QWidget(parent), title_(new QLabel(this)), tree_(new QTreeWidget(this)) {
  auto* bar = new QHBoxLayout;
  // The title gives way to the buttons: however narrow the pane, Copy and Close stay whole.
  title_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  bar->addWidget(title_, 1);
  auto* copyButton = new QPushButton(tr("Copy"), this);
  connect(copyButton, &QPushButton::clicked, this, &EntryDetailView::copy);
  bar->addWidget(copyButton);
  auto* closeButton = new QToolButton(this);
  closeButton->setText(QStringLiteral("\u2715"));
  closeButton->setToolTip(tr("Close the details"));
  connect(closeButton, &QToolButton::clicked, this, &EntryDetailView::clear);
  bar->addWidget(closeButton);

  tree_->setColumnCount(2);
  tree_->setHeaderLabels({tr("Key"), tr("Value")});
  tree_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  tree_->setUniformRowHeights(true);
  tree_->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
  auto* copyKey = new QShortcut(QKeySequence::Copy, tree_, nullptr, nullptr, Qt::WidgetShortcut);
  connect(copyKey, &QShortcut::activated, this, &EntryDetailView::copy);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(bar);
  layout->addWidget(tree_);
  hide();
}

EntryDetailView::~EntryDetailView() = default;

void EntryDetailView::showEntry(const EntryList& entries, size_t entry, const QString& title) {
  rows_ = entryDetails(entries, entry);
  tree_->clear();
  std::vector<QTreeWidgetItem*> parents;
  for (const DetailRow& row : rows_) {
    parents.resize(static_cast<size_t>(row.depth));
    auto* item = parents.empty() ? new QTreeWidgetItem(tree_) : new QTreeWidgetItem(parents.back());
    item->setText(0, qstring(row.key));
    item->setText(1, qstring(row.value));
    item->setToolTip(1, qstring(row.value));
    parents.push_back(item);
  }
  tree_->expandAll();
  title_->setText(title);
  title_->setToolTip(title);
  show();
}

void EntryDetailView::copy() const {
  std::vector<DetailRow> chosen;
  const QList<QTreeWidgetItem*> selected = tree_->selectedItems();
  // Items are made in row order, so an iterator's position is the row's.
  size_t at = 0;
  for (QTreeWidgetItemIterator it(tree_); *it; ++it, ++at)
    if (selected.contains(*it)) chosen.push_back(rows_[at]);
  QGuiApplication::clipboard()->setText(qstring(detailText(chosen.empty() ? rows_ : chosen)));
}

void EntryDetailView::clear() {
  rows_.clear();
  tree_->clear();
  hide();
}

}  // namespace kavor::app
