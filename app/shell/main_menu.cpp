#include "app/shell/main_menu.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>

#include "app/shell/qt_text.h"
#include "engine/shell/menu_texts.h"

namespace kavor::app {

namespace {

struct ItemLayout {
  MenuCommand command;
  std::string_view title;
  QList<QKeySequence> shortcuts;
  bool checkable = false;
  QAction::MenuRole role = QAction::NoRole;
  bool separatorBefore = false;
};

struct MenuLayout {
  std::string_view title;
  std::vector<ItemLayout> items;
};

std::vector<MenuLayout> menuLayouts() {
  using C = MenuCommand;
  using K = QKeySequence;
  return {
      {kApplicationMenuTitle,
       {
           {C::enableChartView, kEnableChartViewItem, {}, true},
           {C::preferences,
            "Preferences\u2026",
            {K::Preferences},
            false,
            QAction::PreferencesRole,
            true},
           {C::quit, "Quit Kavor", {K::Quit}, false, QAction::QuitRole, true},
       }},
      {kFileMenuTitle,
       {
           {C::newDocument, "New", {K::New}},
           {C::openDocument, "Open\u2026", {K::Open}},
           {C::chooseSource, "Choose Logarchive or File\u2026", {K("Ctrl+Shift+O")}},
           {C::closeWindow, "Close", {K::Close}, false, QAction::NoRole, true},
           {C::save, "Save\u2026", {K::Save}},
           {C::saveAs, "Save As\u2026", {K::SaveAs}},
           {C::makeLogarchive, "Make Logarchive\u2026", {}, false, QAction::NoRole, true},
           {C::saveDefaults, "Save Window Settings", {}},
           {C::exportPrefs, "Export Preferences\u2026", {}, false, QAction::NoRole, true},
           {C::importPrefs, "Import Preferences\u2026", {}},
       }},
      {kEditMenuTitle,
       {
           {C::copy, "Copy", {K::Copy}},
           {C::paste, "Paste", {K::Paste}},
       }},
      {kViewMenuTitle,
       {
           {C::getLog, "Get Log", {K::Refresh}},
           {C::limitEntries, kLimitEntriesItem, {}, true, QAction::NoRole, true},
           {C::showLogEntries, kShowLogEntriesItem, {}, true},
           {C::showSignposts, kShowSignpostsItem, {}, true},
           {C::showActivities, kShowActivitiesItem, {}, true},
           {C::fetchInfo, kFetchInfoItem, {}, true, QAction::NoRole, true},
           {C::fetchSignposts, kFetchSignpostsItem, {}, true},
           {C::fetchDebug, kFetchDebugItem, {}, true},
           {C::biggerFont, "Bigger", {K::ZoomIn, K("Ctrl+=")}, false, QAction::NoRole, true},
           {C::smallerFont, "Smaller", {K::ZoomOut}},
           {C::convertToCsv, "Convert to CSV", {K("Ctrl+Shift+C")}, false, QAction::NoRole, true},
           {C::showAsTable, kShowAsTableItem, {K("Ctrl+T")}, true},
       }},
      {kWindowsMenuTitle,
       {
           {C::openChart, kOpenChartItem, {K("Ctrl+Shift+G")}},
           {C::logarchiveTool, kLogarchiveToolItem, {}},
           {C::logCheck, kLogCheckItem, {}},
           {C::logFields, kLogFieldsItem, {}},
       }},
      {kHelpMenuTitle,
       {
           {C::help, kHelpItem, {K::HelpContents}},
           {C::supportPage, kSupportPageItem, {}, false, QAction::NoRole, true},
           {C::releasesPage, kReleasesPageItem, {}},
           {C::updateStatus, kUpdateNotCheckedItem, {}, false, QAction::NoRole, true},
       }},
  };
}

}  // namespace

MainMenu::MainMenu() {
  for (const MenuLayout& layout : menuLayouts()) {
    auto menu = std::make_unique<QMenu>(qstring(layout.title));
    for (const ItemLayout& item : layout.items) {
      if (item.separatorBefore) menu->addSeparator();
      QAction* action = menu->addAction(qstring(item.title));
      action->setShortcuts(item.shortcuts);
      action->setCheckable(item.checkable);
      action->setMenuRole(item.role);
      actions_[static_cast<size_t>(item.command)] = action;
    }
    menus_.push_back(std::move(menu));
  }
  // The interface definition ticks the chart switch; only its action changes it afterwards.
  action(MenuCommand::enableChartView)->setChecked(true);
  // Until a document's chart data is ready there is no chart to open.
  showItem(kWindowsMenuTitle, kOpenChartItem, false);
  action(MenuCommand::updateStatus)->setEnabled(false);
}

MainMenu::~MainMenu() = default;

void MainMenu::showItem(std::string_view menuTitle, std::string_view itemTitle, bool shown) const {
  if (QAction* item = itemTitled(menuTitled(menuTitle), itemTitle)) {
    item->setVisible(shown);
    item->setEnabled(shown);
  }
}

void MainMenu::attachTo(QMenuBar* bar) const {
  for (const auto& menu : menus_)
    bar->addMenu(menu.get());
}

QMenu* MainMenu::menuTitled(std::string_view title) const {
  for (const auto& menu : menus_)
    if (menu->title() == qstring(title)) return menu.get();
  return nullptr;
}

QAction* MainMenu::itemTitled(const QMenu* menu, std::string_view title) {
  if (!menu) return nullptr;
  for (QAction* action : menu->actions())
    if (!action->isSeparator() && action->text() == qstring(title)) return action;
  return nullptr;
}

}  // namespace kavor::app
