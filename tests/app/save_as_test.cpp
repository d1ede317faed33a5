// Saving what the window shows in the type it is: the CSV text as it is, a typed extension kept,
// and the window's status saying where the file went.

#include <QApplication>
#include <QFileDialog>
#include <QStatusBar>
#include <QTest>
#include <QTimer>

#include "app/document/app_document.h"
#include "app/document/document_controller.h"
#include "app/query/view_controller.h"
#include "app/shell/file_panels.h"
#include "app/shell/window_controller.h"
#include "engine/core/entry_list.h"
#include "engine/document/document_saving.h"
#include "engine/query/csv_conversion.h"
#include "tests/app/app_fixture.h"
#include "tests/app/app_test_registry.h"

using namespace kavor;
using namespace kavor::app;
using namespace kavor::app_testing;

namespace {

constexpr std::string_view kTwoEntries = R"([
{"timestamp" : "2026-11-20 09:59:50.000001+0000", "eventType" : "logEvent", "processID" : 85,
 "subsystem" : "com.apple.xpc", "eventMessage" : "hello, world"},
{"timestamp" : "2026-11-20 09:59:51.000002+0000", "eventType" : "logEvent", "processID" : 7,
 "subsystem" : "com.example.disk", "eventMessage" : "an error here"}
])";

const std::vector<SaveType> kTypes{{std::string(kPlainTextType), "Plain Text", "txt"},
                                   {std::string(kCsvType), "CSV", "csv"}};

// Types `name` into the real save panel, in `folder`, with the first type's filter chosen.
std::optional<SaveChoice> typeName(const QString& folder, const QString& name,
                                   const std::vector<SaveType>& types) {
  QTimer::singleShot(0, [&] {
    auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    if (!dialog) return;
    dialog->setDirectory(folder);
    dialog->selectFile(name);
    static_cast<QDialog*>(dialog)->accept();
  });
  DialogFilePanels panels;
  return panels.runSavePanel({"Save As", "proposed", types, true}, nullptr);
}

QString statusOf(const AppDocument* document) {
  return document->windowControllers().front()->window()->statusBar()->currentMessage();
}

}  // namespace

class SaveAsTest : public QObject {
  Q_OBJECT

 private slots:
  void csvIsOfferedWhileShownAndSavedWithoutTrailer() {
    TestApp app;
    AppDocument* document = app.newDocument();
    ViewController& view = TestApp::controller(document);
    app.tool().printOutput(kTwoEntries);
    QVERIFY(TestApp::getLog(view));
    TempFolder folder;

    // Styled text: no CSV among the types.
    document->saveDocumentAs();  // cancelled
    QCOMPARE(app.panels.saveRequests.back().types.size(), size_t{2});

    view.doConversion();
    const auto csvFile = folder.path() / "log.csv";
    app.panels.saveAnswers.push_back(SaveChoice{csvFile, std::string(kCsvType)});
    document->saveDocumentAs();
    const SavePanelRequest& offered = app.panels.saveRequests.back();
    QCOMPARE(offered.types.size(), size_t{3});
    QCOMPARE(offered.types.front().typeName, std::string(kCsvType));
    QCOMPARE(offered.types.front().description, std::string("CSV"));
    const auto expected = convertToCsv(*document->record().theJSONDictionaries,
                                       view.settings().osVersion, {true, false, false});
    QVERIFY(expected && expected->find("\"hello, world\"") != std::string::npos);
    QCOMPARE(readFile(csvFile), *expected);
    QCOMPARE(statusOf(document), QString::fromStdString("Saved to " + csvFile.string()));

    // A styled save adds its trailer to the view; the CSV file still gets the CSV alone.
    const auto rtfFile = folder.path() / "log.rtf";
    app.panels.saveAnswers.push_back(SaveChoice{rtfFile, std::string(kRtfType)});
    document->saveDocumentAs();
    QVERIFY(view.shown().text().size() > expected->size());
    QCOMPARE(statusOf(document), QString::fromStdString("Saved to " + rtfFile.string()));
    app.panels.saveAnswers.push_back(SaveChoice{csvFile, std::string(kCsvType)});
    document->saveDocumentAs();
    QCOMPARE(readFile(csvFile), *expected);

    // Once the view shows styled text again, saving to the CSV file asks for a type anew.
    view.refreshResults();
    TestApp::settle();
    QVERIFY(!view.shown().isCsv());
    const size_t asked = app.panels.saveRequests.size();
    document->saveDocument();
    QCOMPARE(app.panels.saveRequests.size(), asked + 1);
    QCOMPARE(app.panels.saveRequests.back().types.size(), size_t{2});
    QCOMPARE(readFile(csvFile), *expected);
    QVERIFY(app.alerts.shown.empty());
  }

  void aLogReadFromAFileProposesItsNameWithoutExtension() {
    TestApp app;
    TempFolder folder;
    writeFile(folder.path() / "sent log.json", kTwoEntries);
    app.context().documents().openJsonLog(folder.path() / "sent log.json");
    QVERIFY(QTest::qWaitFor([&] { return app.context().documents().opensInFlight() == 0; }, 20000));
    AppDocument* document = app.context().documents().documents().back().get();
    document->saveDocumentAs();
    QCOMPARE(app.panels.saveRequests.back().proposedName, std::string("sent log"));
  }

  void aTypedExtensionIsKept() {
    TempFolder folder;
    const QString where = QString::fromStdString(folder.path().string());
    // Another type's extension chooses that type.
    const auto csv = typeName(where, "log.csv", kTypes);
    QVERIFY(csv);
    QCOMPARE(csv->path, folder.path() / "log.csv");
    QCOMPARE(csv->typeName, std::string(kCsvType));
    // An extension of no offered type is kept, in the chosen type.
    const auto other = typeName(where, "log.text", kTypes);
    QVERIFY(other);
    QCOMPARE(other->path, folder.path() / "log.text");
    QCOMPARE(other->typeName, std::string(kPlainTextType));
    // A name without one gains the chosen type's.
    const auto bare = typeName(where, "log", kTypes);
    QVERIFY(bare);
    QCOMPARE(bare->path, folder.path() / "log.txt");
  }
};

KAVOR_APP_TEST(SaveAsTest);

#include "save_as_test.moc"
