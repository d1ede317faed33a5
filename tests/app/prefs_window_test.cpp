// The Preferences window over the lists a main window shows, and the main window's export and
// import of them.

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "app/document/app_document.h"
#include "app/query/view_controller.h"
#include "app/shell/app_delegate.h"
#include "app/shell/main_menu.h"
#include "app/shell/prefs_view_controller.h"
#include "app/shell/window_controller.h"
#include "engine/query/settings_texts.h"
#include "tests/app/app_fixture.h"
#include "tests/app/app_test_registry.h"
#include "ui_document_window.h"
#include "ui_prefs_window.h"

using namespace kavor;
using namespace kavor::app;
using namespace kavor::app_testing;

namespace {

PrefsViewController& openPrefs(TestApp& app) {
  app.context().menu().action(MenuCommand::preferences)->trigger();
  return *static_cast<PrefsViewController*>(
      app.context().delegate().myPrefsWindow.back()->contentViewController());
}

QStringList itemsOf(const QComboBox* box) {
  QStringList items;
  for (int i = 0; i < box->count(); ++i)
    items << box->itemText(i);
  return items;
}

}  // namespace

class PrefsWindowTest : public QObject {
  Q_OBJECT

 private slots:
  void anEditReachesTheOpenMainWindowsWhenThePreferencesClose() {
    TestApp app;
    ViewController& main = TestApp::controller(app.newDocument());
    const int predicates = main.ui().comboPredicate->count();
    PrefsViewController& prefs = openPrefs(app);
    Ui::PrefsWindow& ui = prefs.ui();

    // "New…" then Add: an entry of the placeholder texts, selected.
    ui.popupPredList->activated(ui.popupPredList->count() - 1);
    QCOMPARE(ui.textPredName->text(), QString("untitled"));
    QCOMPARE(ui.textPredPred->text(), QString("enter predicate here"));
    ui.textPredName->setText("kernel only");
    ui.textPredPred->setText("processID == 0");
    ui.buttonPredAdd->click();
    QCOMPARE(ui.popupPredList->currentText(), QString("kernel only"));
    ui.theLogLimitText->setText("2500");
    ui.checkboxReplaceOnImport->setChecked(false);
    // Nothing reaches the main window while the preferences are open.
    QCOMPARE(main.ui().comboPredicate->count(), predicates);

    prefs.window()->close();
    QCOMPARE(main.ui().comboPredicate->count(), predicates + 1);
    QCOMPARE(main.ui().comboPredicate->itemText(predicates), QString("kernel only"));
    QCOMPARE(app.settings.integerValue(kLogLimitKey), int64_t{2500});
    QCOMPARE(main.settings().theLogCap, int64_t{2500});
    QVERIFY(!app.settings.boolValue(kReplaceOnImportKey));
  }

  void exportThenImportRoundTripsAndABadFileChangesNothing() {
    TestApp app;
    ViewController& main = TestApp::controller(app.newDocument());
    TempFolder folder;
    const std::filesystem::path file = folder / "lists.plist";
    app.panels.saveAnswers.push_back(SaveChoice{file, "com.apple.property-list"});
    main.exportPrefs();
    QVERIFY(readFile(file).find("<key>specPredList</key>") != std::string::npos);
    const QStringList styles = itemsOf(main.ui().comboStyle);

    // A list changed after the export comes back as it was: the import replaces.
    NamedList changed = main.settings().specStyleList;
    changed.push_back({"extra", "0 10"});
    QVERIFY(app.settings.setNamedList(kSpecStyleListKey, changed));
    QVERIFY(app.settings.setInteger(kPopupStyleKey, 2));
    main.loadCusMenu();
    QCOMPARE(main.ui().comboStyle->count(), styles.size() + 1);
    QCOMPARE(main.ui().comboStyle->currentIndex(), 2);
    app.panels.openAnswers.push_back(file);
    main.importPrefs();
    QVERIFY(app.alerts.shown.empty());
    QCOMPARE(itemsOf(main.ui().comboStyle), styles);
    QCOMPARE(main.ui().comboStyle->currentIndex(), 0);
    QCOMPARE(app.panels.openRequests.back().allowedExtensions, std::vector<std::string>{"plist"});

    const std::filesystem::path bad = folder / "bad.plist";
    writeFile(bad, "<plist><array><string>not lists</string></array></plist>");
    app.panels.openAnswers.push_back(bad);
    main.importPrefs();
    QCOMPARE(app.alerts.shown.size(), size_t{1});
    QCOMPARE(app.alerts.shown[0].message, std::string("An error occurred in your last action:"));
    QCOMPARE(itemsOf(main.ui().comboStyle), styles);

    // An export that cannot be written says so.
    app.panels.saveAnswers.push_back(SaveChoice{folder / "gone/lists.plist", ""});
    main.exportPrefs();
    QCOMPARE(app.alerts.shown.size(), size_t{2});
    QCOMPARE(app.alerts.shown[1].informative, std::string("Couldn't save exported file."));
  }
};

KAVOR_APP_TEST(PrefsWindowTest);
#include "prefs_window_test.moc"
