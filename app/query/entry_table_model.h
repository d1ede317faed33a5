#pragma once
// The table mode's model: one row per shown entry, one column per item of the style that made
// the result, each cell cut and coloured as its piece of the line. It reads the entries and the
// result in place, styling only the cells the table asks for.

#include <QAbstractTableModel>
#include <memory>
#include <string>

#include "engine/core/user_characters.h"

namespace kavor {
class EntryList;
class ShownResult;
}  // namespace kavor

namespace kavor::app {

class EntryTableModel final : public QAbstractTableModel {
  Q_OBJECT

 public:
  explicit EntryTableModel(QObject* parent = nullptr);
  ~EntryTableModel() override;

  // The entries and the result made from them; the result must outlive the model or be
  // replaced first. No result gives an empty table.
  void setResult(std::shared_ptr<const EntryList> entries, const ShownResult* result);
  // The row's position in the entries.
  size_t entryOf(int row) const;
  // The colours for a dark background, or for a light one.
  void setDarkColours(bool dark) { dark_ = dark; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  std::shared_ptr<const EntryList> entries_;
  const ShownResult* result_ = nullptr;
  bool dark_ = false;
  // Cells are styled on the main thread as they are painted.
  mutable UserCharacters chars_;
  mutable std::string scratch_;
};

}  // namespace kavor::app
