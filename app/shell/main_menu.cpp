#include "app/shell/main_menu.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>

#include "app/shell/qt_text.h"
#include "engine/shell/menu_texts.h"

namespace kavor::app {

namespace {

// Each title names its mnemonic: the first occurrence of that letter, unique within its menu,
// so that every command is reachable from the keyboard.
struct ItemLayout {
  MenuCommand command;
  std::string_view title;
  char mnemonic;
  QList<QKeySequence> shortcuts;
  bool checkable = false;
  QAction::MenuRole role = QAction::NoRole;
  bool separatorBefore = false;
};

struct MenuLayout {
  std::string_view title;
  char mnemonic;
  std::vector<ItemLayout> items;
};

// The platform's Save As key, or Ctrl+Shift+S where it has none.
QList<QKeySequence> saveAsKeys() {
  QList<QKeySequence> keys = QKeySequence::keyBindings(QKeySequence::SaveAs);
  if (keys.isEmpty()) keys.append(QKeySequence(QStringLiteral("Ctrl+Shift+S")));
  return keys;
}

// Ctrl+R, which the menu shows, and the platform's Refresh key where that is another.
QList<QKeySequence> getLogKeys() {
  QList<QKeySequence> keys{QKeySequence(QStringLiteral("Ctrl+R"))};
  for (const QKeySequence& key : QKeySequence::keyBindings(QKeySequence::Refresh))
    if (!keys.contains(key)) keys.append(key);
  return keys;
}

// F3 and Ctrl+G, as find bars take them, and the platform's own key where that is another.
QList<QKeySequence> findNextKeys() {
  QList<QKeySequence> keys{QKeySequence(Qt::Key_F3), QKeySequence(QStringLiteral("Ctrl+G"))};
  for (const QKeySequence& key : QKeySequence::keyBindings(QKeySequence::FindNext))
    if (!keys.contains(key)) keys.append(key);
  return keys;
}

// The title as a menu shows it: "&" before the mnemonic, any "&" of the title doubled.
QString withMnemonic(std::string_view title, char mnemonic) {
  QString text = qstring(title).replace(u'&', QStringLiteral("&&"));
  const qsizetype at = text.indexOf(QChar(mnemonic));
  if (at >= 0) text.insert(at, u'&');
  return text;
}

// The title without its mnemonic marker, as lookups by title compare it.
QString plainTitle(const QString& shown) {
  QString text;
  for (qsizetype i = 0; i < shown.size(); ++i) {
    if (shown[i] == u'&' && ++i == shown.size()) break;
    text += shown[i];
  }
  return text;
}

std::vector<MenuLayout> menuLayouts() {
  using C = MenuCommand;
  using K = QKeySequence;
  return {
      {kApplicationMenuTitle,
       'K',
       {
           {C::enableChartView, kEnableChartViewItem, 'E', {}, true},
           {C::preferences,
            "Preferences\u2026",
            'P',
            {K::Preferences},
            false,
            QAction::PreferencesRole,
            true},
           {C::quit, "Quit Kavor", 'Q', {K::Quit}, false, QAction::QuitRole, true},
       }},
      {kFileMenuTitle,
       'F',
       {
           {C::newDocument, "New", 'N', {K::New}},
           {C::openDocument, "Open\u2026", 'O', {K::Open}},
           {C::openJsonLog, kOpenJsonLogItem, 'J', {K("Ctrl+Shift+J")}},
           {C::chooseSource, "Choose Logarchive or File\u2026", 'L', {K("Ctrl+Shift+O")}},
           {C::closeWindow, "Close", 'C', {K::Close}, false, QAction::NoRole, true},
           {C::save, "Save\u2026", 'S', {K::Save}},
           {C::saveAs, "Save As\u2026", 'A', saveAsKeys()},
           {C::makeLogarchive, "Make Logarchive\u2026", 'M', {}, false, QAction::NoRole, true},
           {C::saveDefaults, "Save Window Settings", 'W', {}},
           {C::exportPrefs, "Export Preferences\u2026", 'E', {}, false, QAction::NoRole, true},
           {C::importPrefs, "Import Preferences\u2026", 'I', {}},
       }},
      {kEditMenuTitle,
       'E',
       {
           {C::copy, "Copy", 'C', {K::Copy}},
           {C::paste, "Paste", 'P', {K::Paste}},
           {C::find, kFindItem, 'F', {K::Find}, false, QAction::NoRole, true},
           {C::findNext, kFindNextItem, 'N', findNextKeys()},
           // Ctrl+Shift+G opens the chart; the find bar's field takes it for itself.
           {C::findPrevious, kFindPreviousItem, 'v', {K(QStringLiteral("Shift+F3"))}},
       }},
      {kViewMenuTitle,
       'V',
       {
           {C::getLog, "Get Log", 'G', getLogKeys()},
           {C::limitEntries, kLimitEntriesItem, 'L', {}, true, QAction::NoRole, true},
           {C::showLogEntries, kShowLogEntriesItem, 'e', {}, true},
           {C::showSignposts, kShowSignpostsItem, 'S', {}, true},
           {C::showActivities, kShowActivitiesItem, 'A', {}, true},
           {C::fetchInfo, kFetchInfoItem, 'i', {}, true, QAction::NoRole, true},
           {C::fetchSignposts, kFetchSignpostsItem, 'p', {}, true},
           {C::fetchDebug, kFetchDebugItem, 'D', {}, true},
           {C::biggerFont, "Bigger", 'B', {K::ZoomIn, K("Ctrl+=")}, false, QAction::NoRole, true},
           {C::smallerFont, "Smaller", 'm', {K::ZoomOut}},
           {C::convertToCsv,
            "Convert to CSV",
            'C',
            {K("Ctrl+Shift+C")},
            false,
            QAction::NoRole,
            true},
           {C::showAsTable, kShowAsTableItem, 'T', {K("Ctrl+T")}, true},
       }},
      {kWindowsMenuTitle,
       'W',
       {
           {C::openChart, kOpenChartItem, 'O', {K("Ctrl+Shift+G")}},
           {C::logarchiveTool, kLogarchiveToolItem, 'L', {}},
           {C::logCheck, kLogCheckItem, 'C', {}},
           {C::logFields, kLogFieldsItem, 'F', {}},
       }},
      {kHelpMenuTitle,
       'H',
       {
           {C::help, kHelpItem, 'K', {K::HelpContents}},
           {C::supportPage, kSupportPageItem, 'S', {}, false, QAction::NoRole, true},
           {C::releasesPage, kReleasesPageItem, 'R', {}},
           {C::updateStatus, kUpdateNotCheckedItem, 'U', {}, false, QAction::NoRole, true},
       }},
  };
}

}  // namespace

MainMenu::MainMenu() {
  for (const MenuLayout& layout : menuLayouts()) {
    auto menu = std::make_unique<QMenu>(withMnemonic(layout.title, layout.mnemonic));
    for (const ItemLayout& item : layout.items) {
      if (item.separatorBefore) menu->addSeparator();
      QAction* action = menu->addAction(withMnemonic(item.title, item.mnemonic));
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
    if (plainTitle(menu->title()) == qstring(title)) return menu.get();
  return nullptr;
}

QAction* MainMenu::itemTitled(const QMenu* menu, std::string_view title) {
  if (!menu) return nullptr;
  for (QAction* action : menu->actions())
    if (!action->isSeparator() && plainTitle(action->text()) == qstring(title)) return action;
  return nullptr;
}

}  // namespace kavor::app
