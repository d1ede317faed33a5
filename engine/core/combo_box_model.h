#pragma once
// What a combo box holds, without the widget: its rows, which row is selected, and the text it
// shows. The operations behave as the platform's combo box does, so the window only binds its
// control to this model and engine code can be tested without one.

#include <cstdint>
#include <string>
#include <vector>

namespace kavor {

class ComboBoxModel {
 public:
  // Rows go, the shown text stays: a box refilled with a stored selection of -1 keeps showing
  // what it showed before.
  void removeAllItems();
  void addItem(std::string name);
  // A row shows its name; a negative index, or one past the last row, only deselects.
  void selectItem(int64_t index);
  // The user typed: no row is selected and the box shows the text.
  void typeText(std::string text);

  int64_t rowCount() const { return static_cast<int64_t>(items_.size()); }
  // -1 when no row is selected.
  int64_t selectedIndex() const { return selected_; }
  const std::string& displayedString() const { return displayed_; }
  const std::vector<std::string>& items() const { return items_; }

 private:
  std::vector<std::string> items_;
  int64_t selected_ = -1;
  std::string displayed_;
};

}  // namespace kavor
