// The main window for daily use: its keys and mnemonics, the notice when the entry limit cut
// the entries, the desktop's dark scheme, and what an empty window suggests.

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSet>
#include <QSignalSpy>
#include <QTest>

#include "app/document/app_document.h"
#include "app/query/result_view.h"
#include "app/query/view_controller.h"
#include "app/shell/colour_scheme.h"
#include "app/shell/main_menu.h"
#include "app/shell/window_controller.h"
#include "engine/query/limit_notice.h"
#include "engine/query/window_texts.h"
#include "engine/shell/menu_texts.h"
#include "tests/app/app_fixture.h"
#include "tests/app/app_test_registry.h"
#include "ui_document_window.h"

using namespace kavor;
using namespace kavor::app;
using namespace kavor::app_testing;

namespace {

std::string logEvents(int count) {
  std::string json = "[";
  for (int i = 0; i < count; ++i)
    json += std::string(i ? "," : "") + R"({"eventType" : "logEvent", "eventMessage" : "m"})";
  return json + "]";
}

// The mnemonic a menu text marks, lowered; 0 when it marks none.
QChar mnemonicOf(const QString& text) {
  for (qsizetype i = 0; i + 1 < text.size(); ++i) {
    if (text[i] != u'&') continue;
    if (text[i + 1] != u'&') return text[i + 1].toLower();
    ++i;
  }
  return QChar();
}

}  // namespace

class WindowKeysTest : public QObject {
  Q_OBJECT

 private slots:
  void keysRunGetLog() {
    TestApp app;
    AppDocument* document = app.newDocument();
    ViewController& view = TestApp::controller(document);
    QWidget* window = document->windowControllers().front()->window();
    QVERIFY(QTest::qWaitForWindowActive(window));
    app.tool().printOutput(logEvents(2));
    QSignalSpy completed(&view, &ViewController::logShowCompleted);
    const auto ran = [&](int runs) {
      return QTest::qWaitFor([&] { return completed.count() == runs; }, 20000);
    };
    QTest::keySequence(window, QKeySequence(QStringLiteral("Ctrl+R")));
    QVERIFY(ran(1));
    QTest::keySequence(window, QKeySequence::Refresh);
    QVERIFY(ran(2));
    // Return in the period field takes the period typed, then fetches.
    QLineEdit* period = view.ui().textTimePeriod;
    period->setFocus();
    period->selectAll();
    QTest::keyClicks(period, "-5");
    QTest::keyClick(period, Qt::Key_Return);
    QVERIFY(ran(3));
    QCOMPARE(view.settings().theTimePeriod, int64_t{-5});
    QCOMPARE(view.ui().entryCount->text(), QString("(2)"));
  }

  void everyMenuCommandHasAMnemonicAndKeysAreNotShared() {
    TestApp app;
    AppDocument* document = app.newDocument();
    const QMenuBar* bar = document->windowControllers().front()->window()->menuBar();
    QSet<QChar> menus;
    QSet<QKeySequence> keys;
    for (const QAction* menuAction : bar->actions()) {
      const QChar letter = mnemonicOf(menuAction->text());
      QVERIFY2(!letter.isNull() && !menus.contains(letter), qPrintable(menuAction->text()));
      menus.insert(letter);
      QSet<QChar> items;
      for (const QAction* item : menuAction->menu()->actions()) {
        if (item->isSeparator()) continue;
        const QChar mnemonic = mnemonicOf(item->text());
        QVERIFY2(!mnemonic.isNull() && !items.contains(mnemonic), qPrintable(item->text()));
        items.insert(mnemonic);
        for (const QKeySequence& key : item->shortcuts()) {
          if (key.isEmpty()) continue;  // a standard key this platform does not have
          QVERIFY2(!keys.contains(key), qPrintable(key.toString()));
          keys.insert(key);
        }
      }
    }
  }

  void anEmptyWindowSaysWhatToDoAndTheLimitNoticeWhatWasCut() {
    TestApp app;
    AppDocument* document = app.newDocument();
    ViewController& view = TestApp::controller(document);
    // Empty, the window says what to do over its result, not in it.
    QCOMPARE(view.resultView().placeholderText().toStdString(), kEmptyResultHint);
    QVERIFY(viewText(view).isEmpty() && view.ui().limitNoticeBar->isHidden());
    app.tool().printOutput(logEvents(1500));
    QVERIFY(TestApp::getLog(view));
    QVERIFY(!view.ui().limitNoticeBar->isHidden());
    QCOMPARE(view.ui().limitNotice->text().toStdString(), limitNotice({1000, 1500}, {}));
    QCOMPARE(view.ui().entryCount->text(), QString("(1500)"));
    QCOMPARE(viewText(view).count('\n'), 1000);

    view.ui().limitOffButton->click();
    QVERIFY(QTest::qWaitFor([&] { return viewText(view).count('\n') == 1500; }, 20000));
    QVERIFY(!view.settings().limitEntries);
    QVERIFY(!MainMenu::itemTitled(view.myViewMenu(), kLimitEntriesItem)->isChecked());
    QVERIFY(view.ui().limitNoticeBar->isHidden());
    QCOMPARE(view.ui().entryCount->text(), QString("1500"));

    // On again from the menu, the notice comes back; the CSV text is not cut, so none there.
    view.setLimit();
    QVERIFY(QTest::qWaitFor([&] { return !view.ui().limitNoticeBar->isHidden(); }, 20000));
    view.doConversion();
    QVERIFY(view.ui().limitNoticeBar->isHidden());
  }

  void theResultFollowsTheDesktopsDarkScheme() {
    TestApp app;
    const ViewController& view = TestApp::controller(app.newDocument());
    QVERIFY(!prefersDarkColours(view.resultView().palette()));
    const QPalette light = QApplication::palette();
    QPalette dark = light;
    dark.setColor(QPalette::Base, QColor(35, 38, 41));
    dark.setColor(QPalette::Text, QColor(239, 240, 241));
    QApplication::setPalette(dark);
    TestApp::settle();
    const bool followed = prefersDarkColours(view.resultView().palette());
    QApplication::setPalette(light);
    TestApp::settle();
    QVERIFY(followed);
  }
};

KAVOR_APP_TEST(WindowKeysTest);

#include "window_keys_test.moc"
