// The start-up checks as the launch tells them, and the Log Check window's report and font size.

#include <QAction>
#include <QSignalSpy>
#include <QTest>

#include "app/shell/app_delegate.h"
#include "app/shell/check_log_view_controller.h"
#include "app/shell/main_menu.h"
#include "app/shell/report_area.h"
#include "app/shell/window_controller.h"
#include "engine/shell/check_texts.h"
#include "engine/shell/menu_texts.h"
#include "tests/app/app_fixture.h"
#include "tests/app/app_test_registry.h"
#include "ui_check_log_window.h"

using namespace kavor;
using namespace kavor::app;
using namespace kavor::app_testing;

namespace {

CheckLogViewController& openCheckLog(TestApp& app) {
  app.context().delegate().openCheckLog();
  return *static_cast<CheckLogViewController*>(
      app.context().delegate().myCheckLogWindow.back()->contentViewController());
}

// The report of a window that has just appeared, once it is in.
std::string shownReport(CheckLogViewController& check) {
  if (check.isChecking()) {
    QSignalSpy shown(&check, &CheckLogViewController::reportShown);
    if (!shown.wait(20000)) return "(no report)";
  }
  return check.output().text();
}

}  // namespace

class LogCheckTest : public QObject {
  Q_OBJECT

 private slots:
  void launchTellsEachFailedCheckInOrderAndGoesOn() {
    TestApp app;  // a root with no log store, whose tool fails
    app.checks->useMachine();
    app.tool().failWith(1, "log: cannot read the store");
    QVERIFY(app.context().delegate().applicationDidFinishLaunching());
    const std::vector<std::string_view> expected = {kNoLogFilesAlert, kNoTimesyncAlert,
                                                    kNoLogEntriesAlert, kTimeFormatAlert};
    QCOMPARE(app.alerts.shown.size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i) {
      const Alert& alert = app.alerts.shown[i];
      QCOMPARE(alert.informative, std::string(expected[i]));
      QCOMPARE(alert.message, std::string("An error occurred:"));
      QVERIFY(alert.style == Alert::Style::critical);
      QCOMPARE(alert.buttons, std::vector<std::string>{"OK"});
    }
    // The launch went on: the Windows menu is as it should be.
    QVERIFY(MainMenu::itemTitled(app.context().menu().menuTitled(kWindowsMenuTitle),
                                 kLogarchiveToolItem)
                ->isVisible());
  }

  void aUserWhoIsNoAdministratorEndsTheLaunchAfterOneAlert() {
    TestApp app;
    app.checks->useMachine();
    app.checks->administrator = false;
    QVERIFY(!app.context().delegate().applicationDidFinishLaunching());
    QCOMPARE(app.alerts.shown.size(), size_t{1});
    QCOMPARE(app.alerts.shown[0].informative, std::string(kNotAdminAlert));
  }

  void aDemoSystemPassesAndItsReportSaysSo() {
    TestApp app(standInRoot("14.4"));
    app.checks->useMachine();
    QVERIFY(app.context().delegate().applicationDidFinishLaunching());
    QVERIFY(app.alerts.shown.empty());

    CheckLogViewController& check = openCheckLog(app);
    QCOMPARE(check.window()->windowTitle(), QString("Log Check"));
    const std::string report = shownReport(check);
    QVERIFY2(report.starts_with("Unified log information:\n\nCheck of log files at "
                                "/var/db/diagnostics:\n\t"),
             report.c_str());
    QVERIFY(report.find(" files in the Persist folder;\n") != std::string::npos);
    QVERIFY(report.find("\nThe oldest log entry has a datestamp of ") != std::string::npos);
    QVERIFY2(report.ends_with("The log show command appears to be working correctly."),
             report.c_str());
  }

  void theWindowOpensAtTheStoredSizeAndStoresItsSteps() {
    TestApp app;
    (void)app.settings.setDouble(kLogCheckFontSizeKey, 14.0);
    CheckLogViewController& check = openCheckLog(app);
    QCOMPARE(check.theFontSize(), 14.0);
    (void)shownReport(check);
    check.decFontSize();
    QCOMPARE(check.theFontSize(), 13.0);
    QCOMPARE(app.settings.doubleValue(kLogCheckFontSizeKey), 13.0);
    QCOMPARE(check.ui().outputTextView->font().pointSizeF(), 13.0);
  }
};

KAVOR_APP_TEST(LogCheckTest);
#include "log_check_test.moc"
