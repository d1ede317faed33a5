// The application shell: the launch sequence, the chart switch, the shared menus, and the main
// window that refreshes them when it becomes active.

#include <QAction>
#include <QCoreApplication>
#include <QMenu>
#include <QTest>
#include <QUrl>

#include "app/archive/arch_view_controller.h"
#include "app/document/app_document.h"
#include "app/document/field_view_controller.h"
#include "app/query/view_controller.h"
#include "app/shell/app_delegate.h"
#include "app/shell/check_log_view_controller.h"
#include "app/shell/help_view_controller.h"
#include "app/shell/main_menu.h"
#include "app/shell/prefs_view_controller.h"
#include "app/shell/window_controller.h"
#include "engine/shell/menu_texts.h"
#include "platform/file_bytes.h"
#include "platform/file_settings_store.h"
#include "tests/app/app_fixture.h"
#include "tests/app/app_test_registry.h"

using namespace kavor;
using namespace kavor::app;
using namespace kavor::app_testing;

namespace {

QAction* item(TestApp& app, std::string_view menu, std::string_view title) {
  return MainMenu::itemTitled(app.context().menu().menuTitled(menu), title);
}

bool names(const Alert& alert, const std::filesystem::path& file) {
  return alert.informative.find("\u201C" + file.string() + "\u201D") != std::string::npos;
}

void activate(AppDocument* document) {
  QEvent event(QEvent::WindowActivate);
  QCoreApplication::sendEvent(document->windowControllers().front()->window(), &event);
}

}  // namespace

class ShellTest : public QObject {
  Q_OBJECT

 private slots:
  void launchReadsTheChartSwitchAndSetsTheWindowsMenu() {
    TestApp app;
    QVERIFY(app.settings.setBool("dontShowGraphView", true));
    QAction* openChart = item(app, kWindowsMenuTitle, kOpenChartItem);
    openChart->setVisible(true);
    openChart->setEnabled(true);
    QVERIFY(app.context().delegate().applicationDidFinishLaunching());
    QVERIFY(app.context().delegate().dontShowGraphView);
    QVERIFY(!openChart->isVisible() && !openChart->isEnabled());
    QAction* archiveTool = item(app, kWindowsMenuTitle, kLogarchiveToolItem);
    QVERIFY(archiveTool->isVisible() && archiveTool->isEnabled());
    // The check mark is left as the interface made it.
    QVERIFY(item(app, kApplicationMenuTitle, kEnableChartViewItem)->isChecked());
  }

  void chartSwitchTwiceRestoresValueAndMark() {
    TestApp app;
    AppDelegate& delegate = app.context().delegate();
    QAction* mark = item(app, kApplicationMenuTitle, kEnableChartViewItem);
    mark->trigger();
    QVERIFY(delegate.dontShowGraphView && app.settings.boolValue("dontShowGraphView"));
    QVERIFY(!mark->isChecked());
    mark->trigger();
    QVERIFY(!delegate.dontShowGraphView && !app.settings.boolValue("dontShowGraphView"));
    QVERIFY(mark->isChecked());
  }

  void eachOpenCommandOpensAFurtherWindowAndKeepsItsController() {
    TestApp app;
    AppDelegate& delegate = app.context().delegate();
    struct Kind {
      MenuCommand command;
      const WindowControllers& list;
      const QMetaObject& content;
    };
    for (const Kind& kind : {
             Kind{MenuCommand::help, delegate.myHelpWindow, HelpViewController::staticMetaObject},
             Kind{MenuCommand::logFields, delegate.myField, FieldViewController::staticMetaObject},
             Kind{MenuCommand::preferences, delegate.myPrefsWindow,
                  PrefsViewController::staticMetaObject},
             Kind{MenuCommand::logCheck, delegate.myCheckLogWindow,
                  CheckLogViewController::staticMetaObject},
             Kind{MenuCommand::logarchiveTool, delegate.myArchWindow,
                  ArchViewController::staticMetaObject},
         }) {
      QAction* item = app.context().menu().action(kind.command);
      item->trigger();
      item->trigger();
      QCOMPARE(kind.list.size(), size_t{2});
      QVERIFY(kind.list[0]->window() != kind.list[1]->window());
      for (const auto& controller : kind.list) {
        QVERIFY(controller->window()->isVisible());
        QCOMPARE(controller->contentViewController()->metaObject(), &kind.content);
      }
      // Closing a window keeps its controller.
      kind.list[0]->window()->close();
      QCOMPARE(kind.list.size(), size_t{2});
    }
  }

  void helpMenuOpensTheProjectsPagesInTheBrowser() {
    TestApp app;
    std::vector<QUrl> opened;
    app.context().delegate().setWebPageOpener([&](const QUrl& url) { opened.push_back(url); });
    app.context().menu().action(MenuCommand::supportPage)->trigger();
    app.context().menu().action(MenuCommand::releasesPage)->trigger();
    QCOMPARE(opened.size(), size_t{2});
    QCOMPARE(opened[0], QUrl("https://kavor.app/support/"));
    QCOMPARE(opened[1], QUrl("https://kavor.app/releases/"));
  }

  void activeMainWindowWritesItsSwitchesIntoTheViewMenu() {
    TestApp app;
    AppDocument* first = app.newDocument();
    AppDocument* second = app.newDocument();
    ViewController& one = TestApp::controller(first);
    ViewController& two = TestApp::controller(second);
    two.setLimit();
    QAction* limit = item(app, kViewMenuTitle, kLimitEntriesItem);
    QVERIFY(!limit->isChecked());
    activate(first);
    QVERIFY(one.settings().limitEntries && limit->isChecked());
    activate(second);
    QVERIFY(!limit->isChecked());
    // A menu command reaches the window last active.
    item(app, kViewMenuTitle, kShowActivitiesItem)->trigger();
    QVERIFY(two.settings().showActivities && !one.settings().showActivities);
  }

  void settingsThatCannotBeWrittenAreToldOnce() {
    // No file can be made in /proc, not even by root.
    if (!std::filesystem::is_directory("/proc/self")) QSKIP("needs /proc");
    const std::filesystem::path file = "/proc/kavor-app-test-settings.plist";
    FileSettingsStore store(file);
    TestApp app(&store);
    // The launch writes the update check's keys back: the first write that fails.
    QVERIFY(app.context().delegate().applicationDidFinishLaunching());
    QCOMPARE(app.alerts.shown.size(), size_t{1});
    ViewController& view = TestApp::controller(app.newDocument());  // the first start's reset
    QCOMPARE(app.alerts.shown.size(), size_t{1});
    const Alert& alert = app.alerts.shown[0];
    QVERIFY2(names(alert, file), alert.informative.c_str());
    QVERIFY(alert.informative.find(kTemporaryInfix) == std::string::npos);

    view.doSaveDefaults();
    view.incFontSize();
    app.context().delegate().enableGraphView();
    TestApp::controller(app.newDocument());
    QCOMPARE(app.alerts.shown.size(), size_t{1});
    QCOMPARE(view.settings().theFontSize, 13.0);  // the change holds for this run
  }

  void anUnreadableSettingsFileIsToldOnceAtLaunch() {
    TempFolder folder;
    const std::filesystem::path file = folder.path() / "Kavor.plist";
    writeFile(file, "not a property list");
    FileSettingsStore store(file);
    TestApp app(&store);
    QVERIFY(app.context().delegate().applicationDidFinishLaunching());
    QCOMPARE(app.alerts.shown.size(), size_t{1});
    QVERIFY(store.setAside());
    const Alert& alert = app.alerts.shown[0];
    QVERIFY2(names(alert, file) && names(alert, *store.setAside()), alert.informative.c_str());
    app.newDocument();
    QCOMPARE(app.alerts.shown.size(), size_t{1});
    QVERIFY(FileSettingsStore(file).contains("specStyleList"));
  }
};

KAVOR_APP_TEST(ShellTest);

#include "shell_test.moc"
