// Saved JSON logs opened into windows of their own: from the File menu, dropped on a main window
// and named at launch; files that do not decode get an alert and no window.

#include <QAction>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QProgressBar>
#include <QTest>
#include <QUrl>

#include "app/document/app_document.h"
#include "app/document/document_controller.h"
#include "app/query/result_view.h"
#include "app/query/view_controller.h"
#include "app/shell/main_menu.h"
#include "app/shell/window_controller.h"
#include "engine/document/document_saving.h"
#include "tests/app/app_fixture.h"
#include "tests/app/app_test_registry.h"
#include "ui_document_window.h"

using namespace kavor;
using namespace kavor::app;
using namespace kavor::app_testing;

namespace {

// As "log show --style json" saves it: two log events and a signpost, out of order in time.
constexpr std::string_view kSaved = R"([{
  "timestamp" : "2026-11-20 09:59:51.000002+0000", "eventType" : "logEvent",
  "subsystem" : "com.example.disk", "processID" : 7, "eventMessage" : "second"
},{
  "timestamp" : "2026-11-20 09:58:50.000001+0000", "eventType" : "logEvent",
  "subsystem" : "com.apple.xpc", "processID" : 85, "eventMessage" : "first"
},{
  "timestamp" : "2026-11-20 09:59:52.000003+0000", "eventType" : "signpostEvent",
  "subsystem" : "com.example.sign", "processID" : 9, "eventMessage" : "sign"
}])";

const std::vector<std::unique_ptr<AppDocument>>& documents(TestApp& app) {
  return app.context().documents().documents();
}

// Every open begun has ended, and every window it made shows its result.
bool opensEnded(TestApp& app) {
  return QTest::qWaitFor(
      [&] {
        if (app.context().documents().opensInFlight() > 0) return false;
        for (const auto& document : documents(app))
          if (document->viewController()->restyling()) return false;
        return true;
      },
      20000);
}

void sendDrop(QWidget* window, const QList<QUrl>& urls, bool& entered) {
  QMimeData data;
  data.setUrls(urls);
  const QPoint at(20, 20);
  QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(window, &enter);
  entered = enter.isAccepted();
  if (!entered) return;
  QDropEvent drop(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(window, &drop);
}

}  // namespace

class OpenJsonLogTest : public QObject {
  Q_OBJECT

 private slots:
  void aSavedLogOpensAsIfFetchedAndItsSavesNameTheFile() {
    TestApp app;
    TempFolder folder;
    const auto path = folder / "sent by mail.json";
    writeFile(path, kSaved);
    app.panels.openAnswers.push_back(path);
    app.context().menu().action(MenuCommand::openJsonLog)->trigger();
    QCOMPARE(app.panels.openRequests.at(0).allowedExtensions, std::vector<std::string>{"json"});
    QVERIFY(opensEnded(app));

    QCOMPARE(documents(app).size(), size_t{1});
    AppDocument* document = documents(app).front().get();
    ViewController& view = TestApp::controller(document);
    QCOMPARE(view.window()->windowTitle(), QString("sent by mail.json"));
    QCOMPARE(viewText(view), QString("09:59:51.000002 com.example.disk second \n"
                                     "09:58:50.000001 com.apple.xpc first \n"));
    QCOMPARE(view.ui().entryCount->text(), QString("(3)"));
    QCOMPARE(view.ui().lineCount->text(), QString("2"));
    QVERIFY(view.ui().progressSpinner->isHidden());
    // The chart covers the entries' own time, from the earliest to the latest.
    QVERIFY(QTest::qWaitFor([&] { return document->record().logTimes.size() == 3; }, 20000));
    QCOMPARE(document->record().endDate - document->record().startDate, 62.0);

    const auto trailer = [&] {
      const auto saved = document->dataOfType(kPlainTextType);
      const std::string& text = *saved;
      return text.substr(text.rfind("\nAt "));
    };
    QCOMPARE(trailer(), "\nAt 2026-11-20 10:00:00 from " + path.string());
    // A fetch in the same window replaces the file's entries, and the trailer says so.
    app.tool().printOutput("[]");
    QVERIFY(TestApp::getLog(view));
    QVERIFY(trailer().starts_with("\nAt 2026-11-20 10:00:00 for command log show "));
    QVERIFY(app.alerts.shown.empty());
  }

  void aFileThatDoesNotDecodeGetsAnAlertAndNoWindow() {
    TestApp app;
    TempFolder folder;
    const std::string whole(kSaved);
    const std::vector<std::pair<std::string, std::string>> bad = {
        {"cut.json", whole.substr(0, whole.size() - 3)},
        {"object.json", R"({"eventMessage" : "a"})"},
    };
    for (const auto& [name, bytes] : bad) {
      writeFile(folder / name, bytes);
      app.context().documents().openJsonLog(folder / name);
    }
    QVERIFY(opensEnded(app));
    QVERIFY(documents(app).empty());
    QCOMPARE(app.alerts.shown.size(), bad.size());
    const std::vector<std::string> reasons = {
        "the output was cut short after byte " + std::to_string(whole.size() - 3),
        "the output is not a JSON array at byte 1"};
    for (size_t i = 0; i < bad.size(); ++i) {
      const Alert& alert = app.alerts.shown[i];
      QCOMPARE(alert.message, "The document \u201C" + bad[i].first + "\u201D could not be opened.");
      QVERIFY2(alert.informative.starts_with((folder / bad[i].first).string() + ": "),
               alert.informative.c_str());
      QVERIFY2(alert.informative.ends_with(reasons[i]), alert.informative.c_str());
    }

    // An empty array is a log of no entries: a window that says so.
    writeFile(folder / "none.json", "[]\n");
    app.context().documents().openJsonLog(folder / "none.json");
    QVERIFY(opensEnded(app));
    QCOMPARE(documents(app).size(), size_t{1});
    const ViewController& view = TestApp::controller(documents(app).front().get());
    QCOMPARE(view.window()->windowTitle(), QString("none.json"));
    QCOMPARE(view.ui().entryCount->text(), QString("(0)"));
    QCOMPARE(view.ui().lineCount->text(), QString("0"));
    QCOMPARE(app.alerts.shown.size(), bad.size());
  }

  void droppedJsonLogsOpenAndOtherFilesAreRefused() {
    TestApp app;
    TempFolder folder;
    writeFile(folder / "a.json", kSaved);
    writeFile(folder / "b.JSON", "[]");
    writeFile(folder / "notes.txt", kSaved);
    QWidget* window = app.newDocument()->windowControllers().front()->window();
    const auto url = [&](std::string_view name) {
      return QUrl::fromLocalFile(QString::fromStdString((folder / name).string()));
    };

    bool entered = false;
    sendDrop(window, {url("notes.txt"), QUrl("https://example.invalid/c.json")}, entered);
    QVERIFY(!entered);
    sendDrop(window, {url("a.json"), url("notes.txt"), url("b.JSON")}, entered);
    QVERIFY(entered);
    QVERIFY(opensEnded(app));
    QCOMPARE(documents(app).size(), size_t{3});
    QCOMPARE(TestApp::controller(documents(app)[1].get()).window()->windowTitle(),
             QString("a.json"));
    QCOMPARE(TestApp::controller(documents(app)[2].get()).window()->windowTitle(),
             QString("b.JSON"));
  }

  void aLaunchWhoseFilesAllFailStillHasAWindow() {
    TestApp app;
    TempFolder folder;
    writeFile(folder / "bad.json", "[");
    // The only file named does not open: the application still gets a window.
    app.context().documents().openAtLaunch({folder / "bad.json", folder / "missing.json"});
    QVERIFY(opensEnded(app));
    QCOMPARE(app.alerts.shown.size(), size_t{2});
    QCOMPARE(documents(app).size(), size_t{1});
    QCOMPARE(TestApp::controller(documents(app).front().get()).window()->windowTitle(),
             QString("Kavor"));
  }
};

KAVOR_APP_TEST(OpenJsonLogTest);

#include "open_json_log_test.moc"
