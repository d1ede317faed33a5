#include "app/shell/app_delegate.h"

#include <QAction>
#include <QMenu>

#include "app/shell/app_context.h"
#include "app/shell/main_menu.h"
#include "engine/query/settings_texts.h"
#include "engine/shell/menu_texts.h"

namespace kavor::app {

AppDelegate::AppDelegate(AppContext& app) : app_(app) {}

void AppDelegate::applicationDidFinishLaunching() {
  dontShowGraphView = app_.settings().boolValue(kDontShowGraphViewKey);
  app_.reportSettings(okStatus(), nullptr);  // the first read may have set the file aside
  app_.menu().showItem(kWindowsMenuTitle, kOpenChartItem, false);
  app_.menu().showItem(kWindowsMenuTitle, kLogarchiveToolItem, true);
}

void AppDelegate::enableGraphView() {
  dontShowGraphView = !dontShowGraphView;
  app_.reportSettings(app_.settings().setBool(kDontShowGraphViewKey, dontShowGraphView), nullptr);
  const QMenu* application = app_.menu().menuTitled(kApplicationMenuTitle);
  if (QAction* item = MainMenu::itemTitled(application, kEnableChartViewItem))
    item->setChecked(!dontShowGraphView);
}

}  // namespace kavor::app
