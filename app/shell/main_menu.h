#pragma once
// The application's menus, made once and shared by every window's menu bar, as one menu bar
// serves every window of the application. Controllers find menus and items by their titles (as
// written, without the mnemonic marker the menus show); the application connects each command
// to whichever window is in front.

#include <QObject>
#include <array>
#include <memory>
#include <string_view>
#include <vector>

class QAction;
class QMenu;
class QMenuBar;

namespace kavor::app {

enum class MenuCommand {
  enableChartView,
  preferences,
  quit,
  newDocument,
  openDocument,
  openJsonLog,
  closeWindow,
  save,
  saveAs,
  chooseSource,
  makeLogarchive,
  saveDefaults,
  exportPrefs,
  importPrefs,
  copy,
  paste,
  find,
  findNext,
  findPrevious,
  getLog,
  limitEntries,
  showLogEntries,
  showSignposts,
  showActivities,
  fetchInfo,
  fetchSignposts,
  fetchDebug,
  biggerFont,
  smallerFont,
  convertToCsv,
  showAsTable,
  openChart,
  logarchiveTool,
  logCheck,
  logFields,
  help,
  supportPage,
  releasesPage,
  updateStatus,
  count
};

class MainMenu final : public QObject {
  Q_OBJECT

 public:
  MainMenu();
  ~MainMenu() override;

  // Adds the shared menus to a window's menu bar.
  void attachTo(QMenuBar* bar) const;

  // A top-level menu, or none.
  QMenu* menuTitled(std::string_view title) const;
  // An item of a menu, or none; a missing menu has no items.
  static QAction* itemTitled(const QMenu* menu, std::string_view title);
  // Shows and enables, or hides and disables, an item found by its menu's and its own title;
  // a missing menu or item is skipped.
  void showItem(std::string_view menuTitle, std::string_view itemTitle, bool shown) const;
  QAction* action(MenuCommand command) const { return actions_[static_cast<size_t>(command)]; }

 private:
  std::vector<std::unique_ptr<QMenu>> menus_;
  std::array<QAction*, static_cast<size_t>(MenuCommand::count)> actions_{};
};

}  // namespace kavor::app
