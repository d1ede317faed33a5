#include "app/query/entry_table_model.h"

#include <QColor>

#include "app/shell/qt_text.h"
#include "engine/core/entry_list.h"
#include "engine/core/text_colours.h"
#include "engine/document/shown_result.h"

namespace kavor::app {

EntryTableModel::EntryTableModel(QObject* parent) : QAbstractTableModel(parent) {}
EntryTableModel::~EntryTableModel() = default;

void EntryTableModel::setResult(std::shared_ptr<const EntryList> entries,
                                const ShownResult* result) {
  beginResetModel();
  entries_ = std::move(entries);
  result_ = entries_ ? result : nullptr;
  endResetModel();
}

size_t EntryTableModel::entryOf(int row) const {
  return result_->shown()[static_cast<size_t>(row)].entry;
}

int EntryTableModel::rowCount(const QModelIndex& parent) const {
  if (parent.isValid() || !result_) return 0;
  return static_cast<int>(result_->shown().size());
}

int EntryTableModel::columnCount(const QModelIndex& parent) const {
  if (parent.isValid() || !result_) return 0;
  return static_cast<int>(result_->columns().size());
}

QVariant EntryTableModel::data(const QModelIndex& index, int role) const {
  if (!result_ || !index.isValid()) return {};
  const StyleColumn& column = result_->columns()[static_cast<size_t>(index.column())];
  switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
      return qstring(columnText(*entries_, entryOf(index.row()), column, chars_, scratch_));
    case Qt::ForegroundRole: {
      if (column.colour == TextColour::text) return {};
      const Rgb rgb = colourValue(column.colour, dark_);
      return QColor(rgb.red, rgb.green, rgb.blue);
    }
    default:
      return {};
  }
}

QVariant EntryTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole || !result_) return {};
  if (orientation == Qt::Vertical) return section + 1;
  return qstring(entryKeyName(result_->columns()[static_cast<size_t>(section)].key));
}

}  // namespace kavor::app
