// Documents and their windows: saving as plain text and RTF with the trailer, refusing to open,
// and independent windows.

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "app/document/app_document.h"
#include "app/document/document_controller.h"
#include "app/query/result_view.h"
#include "app/query/view_controller.h"
#include "app/shell/file_panels.h"
#include "app/shell/window_controller.h"
#include "engine/document/document_saving.h"
#include "tests/app/app_fixture.h"
#include "tests/app/app_test_registry.h"

using namespace kavor;
using namespace kavor::app;
using namespace kavor::app_testing;

namespace {

constexpr std::string_view kOneEntry = R"([{"timestamp" : "2026-11-20 09:59:50.000001+0000",
  "eventType" : "logEvent", "subsystem" : "com.apple.xpc", "eventMessage" : "hello \u00e9 \ud83d\ude00"}])";

// Runs the real save panel, types name into it and answers its "replace?" question, if it asks
// one, with answer. Returns the choice and what the question said.
std::pair<std::optional<SaveChoice>, QString> typeIntoSavePanel(
    const QString& folder, const QString& name, QMessageBox::StandardButton answer) {
  QString asked;
  QTimer::singleShot(0, [&] {
    auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    if (!dialog) return;
    dialog->setDirectory(folder);
    dialog->selectFile(name);
    QTimer::singleShot(0, [&, dialog] {
      if (auto* question = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
        asked = question->text();
        question->button(answer)->click();
      }
      // Still open after a "No": the user cancels.
      QTimer::singleShot(0, dialog, [dialog] { dialog->reject(); });
    });
    static_cast<QDialog*>(dialog)->accept();  // the file dialog hides it; it checks the name
  });
  DialogFilePanels panels;
  const SavePanelRequest request{"Save As",
                                 "proposed",
                                 {{std::string(kPlainTextType), "Plain Text", "txt"},
                                  {std::string(kRtfType), "Rich Text Format (RTF)", "rtf"}},
                                 true};
  auto choice = panels.runSavePanel(request, nullptr);
  return {std::move(choice), asked};
}

size_t occurrences(std::string_view text, std::string_view part) {
  size_t count = 0;
  for (size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1))
    ++count;
  return count;
}

}  // namespace

class DocumentTest : public QObject {
  Q_OBJECT

 private slots:
  void savesCarryTheTrailerAndStyledSavesAddToTheView() {
    TestApp app;
    AppDocument* document = app.newDocument();
    ViewController& view = TestApp::controller(document);
    app.tool().printOutput(kOneEntry);
    QVERIFY(TestApp::getLog(view));
    const std::string shown = view.shown().text();
    const std::string trailer =
        "\nAt 2026-11-20 10:00:00 for command log show --style json --info --signpost --start "
        "2026-11-20 09:59:40 --end 2026-11-20 10:00:00";

    TempFolder folder;
    const auto text = folder.path() / "saved.txt";
    app.panels.saveAnswers.push_back(SaveChoice{text, std::string(kPlainTextType)});
    document->saveDocumentAs();
    QCOMPARE(app.panels.saveRequests.at(0).proposedName, std::string("Kavor_2026-11-20 09:59:40"));
    QCOMPARE(readFile(text), shown + trailer);
    document->saveDocument();  // the same file again, no panel
    QCOMPARE(app.panels.saveRequests.size(), size_t{1});
    QCOMPARE(readFile(text), shown + trailer);

    const auto rtf = folder.path() / "saved.rtf";
    for (int i = 0; i < 2; ++i) {
      app.panels.saveAnswers.push_back(SaveChoice{rtf, std::string(kRtfType)});
      document->saveDocumentAs();
    }
    const std::string styled = readFile(rtf);
    QVERIFY(styled.starts_with("{\\rtf1"));
    QCOMPARE(occurrences(styled, "for command log show"), size_t{2});
    // The view shows what the styled saves appended, in the default font.
    QCOMPARE(view.shown().text(), shown + trailer + trailer);
    QCOMPARE(view.shown().fontedLength(), shown.size());
    QVERIFY(viewText(view).endsWith(QString::fromStdString(trailer)));
    QVERIFY(app.alerts.shown.empty());
  }

  void aSaveThatCannotBeWrittenIsReported() {
    TestApp app;
    AppDocument* document = app.newDocument();
    app.panels.saveAnswers.push_back(
        SaveChoice{"/nonexistent-folder/saved.txt", std::string(kPlainTextType)});
    document->saveDocumentAs();
    QCOMPARE(app.alerts.shown.size(), size_t{1});
    QCOMPARE(app.alerts.shown[0].message,
             std::string("The document \u201CUntitled\u201D could not be saved."));
    QVERIFY(!std::filesystem::exists("/nonexistent-folder/saved.txt"));
  }

  void saveAsAsksBeforeReplacingTheFileItWillWrite() {
    QTemporaryDir folder;
    const QString victim = folder.filePath("victim.txt");
    QFile file(victim);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("precious") == 8);
    file.close();

    const auto [declined, question] = typeIntoSavePanel(folder.path(), "victim", QMessageBox::No);
    QVERIFY(!declined);
    QVERIFY2(question.contains("victim.txt"), qPrintable(question));

    const auto [replaced, again] = typeIntoSavePanel(folder.path(), "victim", QMessageBox::Yes);
    QVERIFY(replaced && !again.isEmpty());
    QCOMPARE(QString::fromStdString(replaced->path.string()), victim);
    QCOMPARE(replaced->typeName, std::string(kPlainTextType));
  }

  void openingAnyFileFailsAndMakesNoDocument() {
    TestApp app;
    app.newDocument();
    app.panels.openAnswers.push_back(std::filesystem::path("/tmp/Kavor_saved.txt"));
    app.context().documents().openDocument();
    QCOMPARE(app.context().documents().documents().size(), size_t{1});
    QCOMPARE(app.alerts.shown.size(), size_t{1});
    QCOMPARE(app.alerts.shown[0].message,
             std::string("The document \u201CKavor_saved.txt\u201D could not be opened."));
    QCOMPARE(app.alerts.shown[0].informative,
             std::string("The operation couldn\u2019t be completed. (OSStatus error -4.)"));
    QVERIFY(!AppDocument::readFromData("anything", kPlainTextType).ok());
  }

  void twoWindowsKeepIndependentDocuments() {
    TestApp app;
    AppDocument* first = app.newDocument();
    AppDocument* second = app.newDocument();
    app.tool().printOutput(kOneEntry);
    QVERIFY(TestApp::getLog(TestApp::controller(first)));
    QCOMPARE(first->record().theJSONDictionaries->size(), size_t{1});
    QVERIFY(second->record().theJSONDictionaries->empty());
    QCOMPARE(viewText(TestApp::controller(second)), QString());
    QCOMPARE(second->displayName(), std::string("Untitled"));
  }
};

KAVOR_APP_TEST(DocumentTest);

#include "document_test.moc"
