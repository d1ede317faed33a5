#include "engine/core/combo_box_model.h"

#include <utility>

namespace kavor {

void ComboBoxModel::removeAllItems() {
  items_.clear();
  selected_ = -1;
}

void ComboBoxModel::addItem(std::string name) {
  items_.push_back(std::move(name));
}

void ComboBoxModel::selectItem(int64_t index) {
  if (index < 0 || index >= rowCount()) {
    selected_ = -1;
    return;
  }
  selected_ = index;
  displayed_ = items_[static_cast<size_t>(index)];
}

void ComboBoxModel::typeText(std::string text) {
  selected_ = -1;
  displayed_ = std::move(text);
}

}  // namespace kavor
