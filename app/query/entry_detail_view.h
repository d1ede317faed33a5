#pragma once
// The detail pane under the results: every field of one entry, key and value, nested values
// opened below their key, with copy. Hidden until an entry is chosen.

#include <QWidget>
#include <string>
#include <vector>

#include "engine/document/entry_details.h"

class QLabel;
class QTreeWidget;

namespace kavor::app {

class EntryDetailView final : public QWidget {
  Q_OBJECT

 public:
  explicit EntryDetailView(QWidget* parent = nullptr);
  ~EntryDetailView() override;

  // Shows the entry's fields; `title` names it above them.
  void showEntry(const EntryList& entries, size_t entry, const QString& title);
  const std::vector<DetailRow>& rows() const { return rows_; }
  QTreeWidget* tree() const { return tree_; }

 public slots:
  // The selected rows as "key: value" lines, or all of them when none is selected.
  void copy() const;
  void clear();

 private:
  QLabel* title_;
  QTreeWidget* tree_;
  std::vector<DetailRow> rows_;
};

}  // namespace kavor::app
