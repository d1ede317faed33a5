// Find in the main window's result over 100,000 styled lines: the count, stepping both ways
// round the ends, case and regular expressions, a pattern that does not compile, Escape, and a
// new result searched again.

#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>

#include "app/document/app_document.h"
#include "app/query/find_bar.h"
#include "app/query/result_view.h"
#include "app/query/view_controller.h"
#include "app/shell/main_menu.h"
#include "app/shell/window_controller.h"
#include "engine/document/text_search.h"
#include "tests/app/app_fixture.h"
#include "tests/app/app_test_registry.h"
#include "ui_document_window.h"

using namespace kavor;
using namespace kavor::app;
using namespace kavor::app_testing;

namespace {

constexpr int kEntries = 100'000;

// A quarter of the messages hold "Flux", a quarter "flux"; nothing else in a line does.
std::string fluxLog(int count) {
  std::string json = "[";
  for (int i = 0; i < count; ++i) {
    const char* message = i % 4 == 0 ? "Flux capacitor FAILED" : i % 4 == 1 ? "flux ok" : "idle";
    json += std::string(i ? "," : "") + R"({"eventType" : "logEvent", "eventMessage" : ")" +
            message + "\"}";
  }
  return json + "]";
}

class Window {
 public:
  Window() : document_(app.newDocument()), view(TestApp::controller(document_)) {
    window = document_->windowControllers().front()->window();
    view.setLimit();  // off: every entry is a line
  }
  bool fetch(int entries) {
    app.tool().printOutput(fluxLog(entries));
    return TestApp::getLog(view);
  }
  // Waits for the search in hand; the status then says what it found.
  QString found() {
    if (!QTest::qWaitFor([&] { return !view.finding(); }, 20000)) return "still searching";
    return view.findBar().status()->text();
  }
  QString current() {
    const auto [first, last] = view.resultView().selection();
    return QString::fromStdString(view.shown().text().substr(first, last - first));
  }
  void type(const QString& text) {
    QLineEdit* field = view.findBar().field();
    field->selectAll();
    QTest::keyClicks(field, text);
  }
  void set(const QString& text) { view.findBar().field()->setText(text); }
  void key(const QKeySequence& keys) { QTest::keySequence(QApplication::focusWidget(), keys); }

  TestApp app;

 private:
  AppDocument* document_;

 public:
  ViewController& view;
  QWidget* window = nullptr;
};

}  // namespace

class FindBarTest : public QObject {
  Q_OBJECT

 private slots:
  void countsAndStepsRoundTheEnds() {
    Window w;
    QVERIFY(QTest::qWaitForWindowActive(w.window));
    QVERIFY(w.fetch(kEntries));
    QVERIFY(w.view.findBar().isHidden());
    QTest::keySequence(w.window, QKeySequence::Find);
    QVERIFY(!w.view.findBar().isHidden());
    QCOMPARE(QApplication::focusWidget(), w.view.findBar().field());
    w.type("flux");
    QCOMPARE(w.found(), QString("1 of 50000"));
    const std::vector<TextRange> marks = w.view.resultView().highlights();
    QCOMPARE(marks.size(), size_t{50'000});
    QCOMPARE(w.current(), QString("Flux"));

    // Back from the first goes round to the last, which scrolls into view.
    w.key(QKeySequence(QStringLiteral("Shift+F3")));
    QCOMPARE(w.found(), QString("50000 of 50000"));
    QCOMPARE(w.view.resultView().selection(), marks.back());
    const size_t line = w.view.shown().lineOf(marks.back().first);
    const size_t top = w.view.resultView().firstVisibleLine();
    QVERIFY(line >= top &&
            line < top + static_cast<size_t>(w.view.resultView().verticalScrollBar()->pageStep()));
    w.key(QKeySequence(Qt::Key_F3));
    QCOMPARE(w.found(), QString("1 of 50000"));
    // Return and Shift+Return in the field; Ctrl+G and Ctrl+Shift+G, which there steps back
    // instead of opening the chart.
    QSignalSpy chart(w.app.context().menu().action(MenuCommand::openChart), &QAction::triggered);
    for (const auto& [keys, expected] :
         {std::pair{QKeySequence(Qt::Key_Return), "2 of 50000"},
          {QKeySequence(QStringLiteral("Shift+Return")), "1 of 50000"},
          {QKeySequence(QStringLiteral("Ctrl+G")), "2 of 50000"},
          {QKeySequence(QStringLiteral("Ctrl+Shift+G")), "1 of 50000"}}) {
      w.key(keys);
      QCOMPARE(w.found(), QString(expected));
    }
    QCOMPARE(chart.count(), 0);
    QCOMPARE(w.current(), QString("Flux"));
    QCOMPARE(w.view.resultView().selection(), marks.front());
    // The switches' mnemonics leave the focus in the field.
    QTest::keySequence(w.window, QKeySequence(QStringLiteral("Alt+C")));
    QTRY_VERIFY(w.view.findBar().matchCase()->isChecked());  // a mnemonic clicks a moment later
    QCOMPARE(w.found(), QString("1 of 25000"));
    QCOMPARE(QApplication::focusWidget(), w.view.findBar().field());
  }

  void caseAndRegularExpressions() {
    Window w;
    QVERIFY(w.fetch(kEntries));
    w.view.showFind();
    FindBar& bar = w.view.findBar();
    w.set("Flux");
    QCOMPARE(w.found(), QString("1 of 50000"));
    bar.matchCase()->setChecked(true);
    QCOMPARE(w.found(), QString("1 of 25000"));
    bar.regularExpression()->setChecked(true);
    QCOMPARE(w.found(), QString("1 of 25000"));
    // The search goes on from the match in hand, the first "Flux".
    w.set("fl[u]x (ok|cap)");
    QCOMPARE(w.found(), QString("1 of 25000"));
    QCOMPARE(w.current(), QString("flux ok"));
    bar.matchCase()->setChecked(false);
    QCOMPARE(w.found(), QString("2 of 50000"));
    w.view.findPrevious();
    QCOMPARE(w.found(), QString("1 of 50000"));
    QCOMPARE(w.current(), QString("Flux cap"));

    // A pattern that does not compile says why and marks nothing.
    w.set("flux(");
    const auto bad = findInText("", {"flux(", false, true, {}});
    QVERIFY(!bad.ok());
    QCOMPARE(w.found().toStdString(), findErrorText(bad.error()));
    QVERIFY(w.view.resultView().highlights().empty());
    w.set("zebra");
    QCOMPARE(w.found(), QString("No matches"));
  }

  void escapeClosesAndANewResultIsSearchedAgain() {
    Window w;
    QVERIFY(QTest::qWaitForWindowActive(w.window));
    QVERIFY(w.fetch(kEntries));
    w.view.showFind();
    w.set("flux");
    QCOMPARE(w.found(), QString("1 of 50000"));
    QTest::keyClick(w.view.findBar().field(), Qt::Key_Escape);
    QVERIFY(w.view.findBar().isHidden());
    QVERIFY(w.view.resultView().highlights().empty());

    // Find Next with the bar closed opens it and searches the text it kept.
    QTest::keySequence(w.window, QKeySequence(Qt::Key_F3));
    QVERIFY(!w.view.findBar().isHidden());
    QCOMPARE(w.found(), QString("1 of 50000"));
    // A new fetch, and a restyle, search the new text.
    QVERIFY(w.fetch(40));
    QCOMPARE(w.found(), QString("1 of 20"));
    w.view.setShowLogEntries();  // nothing shown now
    QVERIFY(QTest::qWaitFor([&] { return w.found() == "No matches"; }, 20000));
  }

  // In table mode the text is searched and the current match's row selected.
  void theTableSelectsTheRowOfTheCurrentMatch() {
    Window w;
    QVERIFY(w.fetch(40));
    w.view.setTableMode();
    w.view.showFind();
    w.set("capacitor");
    QCOMPARE(w.found(), QString("1 of 10"));
    w.view.findNext();
    QCOMPARE(w.found(), QString("2 of 10"));
    QCOMPARE(w.view.ui().resultTable->currentIndex().row(), 4);
  }
};

KAVOR_APP_TEST(FindBarTest);

#include "find_bar_test.moc"
