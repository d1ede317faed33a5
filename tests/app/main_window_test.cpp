// The main window end to end: Get Log through the log tool, alerts, restyling, the View menu,
// font size, the base date's copy and paste, sources and the privileged collection.

#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QTest>
#include <atomic>
#include <chrono>
#include <future>
#include <memory>

#include "app/document/app_document.h"
#include "app/document/document_controller.h"
#include "app/query/result_view.h"
#include "app/query/view_controller.h"
#include "app/shell/main_menu.h"
#include "engine/shell/menu_texts.h"
#include "platform/clock.h"
#include "tests/app/app_fixture.h"
#include "tests/app/app_test_registry.h"
#include "tests/platform/process_state.h"
#include "ui_document_window.h"

using namespace kavor;
using namespace kavor::app;
using namespace kavor::app_testing;

namespace {

// Three entries: two log events (one with an error) and a signpost.
constexpr std::string_view kThreeEntries = R"([
{"timestamp" : "2026-11-20 09:59:50.000001+0000", "messageType" : "Default", "eventType" : "logEvent",
 "subsystem" : "com.apple.xpc", "threadID" : 4711, "processID" : 85, "eventMessage" : "hello",
 "category" : "main"},
{"timestamp" : "2026-11-20 09:59:51.000002+0000", "messageType" : "Error", "eventType" : "logEvent",
 "subsystem" : "com.example.disk", "threadID" : 12, "processID" : 7, "eventMessage" : "an error here"},
{"timestamp" : "2026-11-20 09:59:52.000003+0000", "messageType" : "Default", "eventType" : "signpostEvent",
 "subsystem" : "com.example.sign", "threadID" : 3, "processID" : 9, "eventMessage" : "sign"}
])";

// Chooses the row as the user does, and lets the restyle it starts run.
void selectRow(QComboBox* box, int row) {
  box->setCurrentIndex(row);
  emit box->activated(row);
  TestApp::settle();
}

// Ten entries whose message "(a+)+$" matches at once, each followed by one it cannot decide.
std::string slowToFilter() {
  const std::string hopeless = std::string(30, 'a') + "b";
  std::string json = "[";
  for (int i = 0; i < 10; ++i) {
    if (i) json += ",";
    json += R"({"eventType" : "logEvent", "eventMessage" : "aaaa"},)";
    json += R"({"eventType" : "logEvent", "eventMessage" : ")" + hopeless + "\"}";
  }
  return json + "]";
}

// A clock for the filter's budget that holds the pass until opened, then moves one second per
// reading. Passes hold copies of it, so it also tells when every pass has ended.
class HeldClock {
 public:
  FilterBudget budget(std::chrono::seconds total) const {
    return {total, [state = state_] {
              // A pass on the main thread would wait here for good: it goes on after a while, and
              // the test fails instead of hanging.
              if (!state->gaveUp &&
                  state->opened.wait_for(std::chrono::seconds(30)) != std::future_status::ready)
                state->gaveUp = true;
              return std::chrono::nanoseconds(std::chrono::seconds(state->readings++));
            }};
  }
  void open() { state_->gate.set_value(); }
  bool released() const { return state_.use_count() == 1; }

 private:
  struct State {
    std::promise<void> gate;
    std::shared_future<void> opened = gate.get_future().share();
    std::atomic<int64_t> readings{0};
    std::atomic<bool> gaveUp{false};
  };
  std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace

class MainWindowTest : public QObject {
  Q_OBJECT

 private slots:
  void getLogAndCollectionWithTheStandInTool() {
    TestApp app(standInRoot());
    ViewController& view = TestApp::controller(app.newDocument());
    QVERIFY(TestApp::getLog(view));

    QVERIFY(app.alerts.shown.empty());
    // The arguments are those of the kavor-cli query cases and the saved trailer.
    QCOMPARE(view.window()->windowTitle(), QString("Kavor_2026-11-20 09:59:40"));
    QCOMPARE(view.theNowStr(), std::string("2026-11-20 10:00:00"));
    const size_t fetched = view.document()->record().theJSONDictionaries->size();
    QVERIFY(fetched > 100);
    QCOMPARE(view.ui().entryCount->text(), QString("(%1)").arg(fetched));
    const auto lines = viewText(view).count('\n');
    QVERIFY(lines > 100 && lines <= 1000);
    QCOMPARE(view.ui().lineCount->text(), QString::number(lines));
    QVERIFY(view.ui().progressSpinner->isHidden());

    TempFolder out;
    const auto archive = out.path() / "with 'quote'.logarchive";
    app.panels.saveAnswers.push_back(SaveChoice{archive, "com.apple.logarchive"});
    view.cmdMakeLog();
    QCOMPARE(app.panels.saveRequests.at(0).types.at(0).extension, std::string("logarchive"));
    QVERIFY(std::filesystem::exists(archive / "Info.plist"));
    QVERIFY(app.alerts.shown.empty());
  }

  void failingToolAlertsAndKeepsTheResults() {
    TestApp app;
    ViewController& view = TestApp::controller(app.newDocument());
    app.tool().printOutput(kThreeEntries);
    QVERIFY(TestApp::getLog(view));
    const QString shown = viewText(view);
    QCOMPARE(shown.count('\n'), 2);  // the signpost is not shown

    app.tool().failWith(64, "log: bad predicate\n");
    QVERIFY(TestApp::getLog(view));
    QCOMPARE(app.alerts.shown.size(), size_t{1});
    QCOMPARE(app.alerts.shown[0].message, std::string("An error occurred in your last action:"));
    QCOMPARE(app.alerts.shown[0].informative,
             std::string("log command returned error number 64\n\nlog: bad predicate"));
    QCOMPARE(viewText(view), shown);
    QCOMPARE(view.ui().entryCount->text(), QString("(3)"));
    QCOMPARE(view.document()->record().theJSONDictionaries->size(), size_t{3});
    QVERIFY(view.ui().progressSpinner->isHidden());

    // Output that does not decode keeps them too, unannounced; an empty array empties the view.
    app.tool().printOutput("[{\"timestamp\" : ");  // cut short
    QVERIFY(TestApp::getLog(view));
    QVERIFY(view.document()->record().theJSONDictionaries->empty());
    QCOMPARE(viewText(view), shown);
    QCOMPARE(app.alerts.shown.size(), size_t{1});
    app.tool().printOutput("[]");
    QVERIFY(TestApp::getLog(view));
    QCOMPARE(viewText(view), QString());
    QCOMPARE(view.ui().lineCount->text(), QString("0"));
    QCOMPARE(view.ui().entryCount->text(), QString("(0)"));
  }

  void closingAWindowDuringARunEndsTheTool() {
    TestApp app;
    ViewController& view = TestApp::controller(app.newDocument());
    app.tool().runEndlessly();
    view.getLogButton();
    const pid_t running = app.tool().runningPid();
    QVERIFY(running > 0);
    view.window()->close();
    QVERIFY(app.context().documents().documents().empty());
    TestApp::settle();  // the document goes, and its queue with it
    QVERIFY(testing_support::processGone(running));
    QVERIFY(app.alerts.shown.empty());
  }

  void displayChoicesRestyleWithoutRunningTheTool() {
    TestApp app;
    ViewController& view = TestApp::controller(app.newDocument());
    app.tool().printOutput(kThreeEntries);
    QVERIFY(TestApp::getLog(view));
    // Any further run would fail loudly.
    app.tool().failWith(70, "ran again");

    selectRow(view.ui().comboStyle, 1);  // "basic": "0h 5r 10"
    QCOMPARE(viewText(view).section('\n', 0, 0), QString("09:59:50.000001  hello "));

    selectRow(view.ui().comboFilter, 1);  // "error"
    QCOMPARE(viewText(view).count('\n'), 1);
    QVERIFY(viewText(view).contains("an error here"));
    selectRow(view.ui().comboFilter, 0);

    // A typed filter that is a name of no row filters by its text.
    QLineEdit* typed = view.ui().comboFilter->lineEdit();
    typed->setText({});
    QTest::keyClicks(typed, "hel");
    QTest::keyClick(typed, Qt::Key_Return);
    TestApp::settle();
    QCOMPARE(view.settings().comboFilter.selectedIndex(), int64_t{-1});
    QCOMPARE(viewText(view), QString("09:59:50.000001  hello \n"));

    // Fetch switches wait for the next Get Log.
    const QString before = viewText(view);
    view.setFetchDebug();
    TestApp::settle();
    QCOMPARE(viewText(view), before);
    QVERIFY(view.myViewMenu() != nullptr);
    QVERIFY(MainMenu::itemTitled(view.myViewMenu(), kFetchDebugItem)->isChecked());
    QVERIFY(app.alerts.shown.empty());
  }

  void slowFilterRunsOffTheMainThreadAndSaysWhatItLeftOut() {
    TestApp app;
    ViewController& view = TestApp::controller(app.newDocument());
    app.tool().printOutput(slowToFilter());
    QVERIFY(TestApp::getLog(view));
    const QString unfiltered = viewText(view);
    QCOMPARE(unfiltered.count('\n'), 20);
    QVERIFY(view.ui().resultNotice->isHidden());
    // Changed lists reach the window through the notification.
    QVERIFY(app.settings.setNamedList("specFiltList", {{"none", ""}, {"*slow", "(a+)+$"}}));
    app.settings.notifications().post("Customs-Changed");

    // The window answers while the pass waits; a quicker restyle replaces it, and the pass's
    // result, when it comes, is dropped.
    HeldClock held;
    view.setFilterBudget(held.budget(std::chrono::seconds(4)));
    selectRow(view.ui().comboFilter, 1);
    QVERIFY(view.restyling());
    QVERIFY(!view.ui().progressSpinner->isHidden());
    QCOMPARE(viewText(view), unfiltered);
    view.setFilterBudget({});
    selectRow(view.ui().comboFilter, 0);
    QVERIFY(!view.restyling());
    QVERIFY(view.ui().progressSpinner->isHidden());
    held.open();
    QVERIFY(QTest::qWaitFor([&] { return held.released(); }, 20000));
    TestApp::settle();
    QCOMPARE(viewText(view), unfiltered);
    QVERIFY(view.ui().resultNotice->isHidden());

    // The budget spent, the window shows what matched until then and says why the rest is not.
    HeldClock counting;
    counting.open();
    view.setFilterBudget(counting.budget(std::chrono::seconds(4)));
    selectRow(view.ui().comboFilter, 1);
    QVERIFY(QTest::qWaitFor([&] { return !view.restyling(); }, 20000));
    const QString shown = viewText(view);
    QVERIFY(shown.count('\n') >= 1 && shown.count('\n') < 10);
    QCOMPARE(shown.count("aaaa \n"), shown.count('\n'));
    QVERIFY(!view.ui().resultNotice->isHidden());
    QCOMPARE(view.ui().resultNotice->text(),
             QString("The filter's regular expression is too slow: showing the entries matched "
                     "in the first 4 s."));
    QCOMPARE(view.ui().lineCount->text(), QString::number(shown.count('\n')));
    QCOMPARE(view.ui().entryCount->text(), QString("(20)"));
    QVERIFY(view.ui().progressSpinner->isHidden());

    // A fetch with that filter chosen is styled off the main thread as well.
    HeldClock fetching;
    view.setFilterBudget(fetching.budget(std::chrono::seconds(4)));
    view.getLogButton();
    QVERIFY(QTest::qWaitFor([&] { return view.runsInFlight() == 0; }, 20000));
    QVERIFY(view.restyling());
    QVERIFY(!view.ui().progressSpinner->isHidden());
    fetching.open();
    QVERIFY(QTest::qWaitFor([&] { return !view.restyling(); }, 20000));
    QVERIFY(!view.ui().resultNotice->isHidden());
    QVERIFY(view.ui().progressSpinner->isHidden());
  }

  void conversionShowsTheEntriesAsCsv() {
    TestApp app;
    ViewController& view = TestApp::controller(app.newDocument());
    view.doConversion();  // nothing fetched: nothing changes
    QCOMPARE(viewText(view), QString());
    app.tool().printOutput(kThreeEntries);
    QVERIFY(TestApp::getLog(view));
    view.doConversion();
    // The header and the two log events; the rows are those of the kavor-cli csv cases.
    QVERIFY(viewText(view).startsWith("datestamp,timestamp,timecorr,machTimestamp,"));
    QCOMPARE(viewText(view).count('\n'), 3);
    QCOMPARE(view.ui().lineCount->text(), QString("3"));
  }

  void fontSizeStopsAtItsBoundsAndIsStored() {
    TestApp app;
    QVERIFY(app.settings.setDouble("fontSize", 22));
    ViewController& view = TestApp::controller(app.newDocument());
    QCOMPARE(view.settings().theFontSize, 22.0);
    for (double expected : {23.0, 24.0, 24.0}) {
      view.incFontSize();
      QCOMPARE(view.settings().theFontSize, expected);
    }
    QCOMPARE(app.settings.doubleValue("fontSize"), 24.0);
    QCOMPARE(view.resultView().font().pointSizeF(), 24.0);

    QVERIFY(app.settings.setDouble("fontSize", 5));
    ViewController& second = TestApp::controller(app.newDocument());
    second.decFontSize();
    second.decFontSize();
    QCOMPARE(second.settings().theFontSize, 4.0);
    QCOMPARE(app.settings.doubleValue("fontSize"), 4.0);
  }

  void baseDateCopiesAndPastesInThePasteboardForm() {
    TestApp app;
    ViewController& view = TestApp::controller(app.newDocument());
    QClipboard* clipboard = QGuiApplication::clipboard();
    auto& picker = *view.ui().textBaseDate;

    clipboard->setText("610024800");
    view.paste();
    QCOMPARE(picker.absoluteTime(), 610024800.0);
    QCOMPARE(picker.dateTime().toUTC().toString(Qt::ISODate), QString("2020-05-01T11:20:00Z"));

    clipboard->setText("610024800 x");
    view.paste();
    QCOMPARE(picker.absoluteTime(), 610024800.0);

    // A chart date keeps its microseconds through paste and copy; editing a field keeps them.
    clipboard->setText("610024800.123456");
    view.paste();
    picker.copy();
    QCOMPARE(clipboard->text(), QString("610024800.123456"));
    picker.setDateTime(picker.dateTime().addSecs(60));
    QCOMPARE(picker.absoluteTime(), 610024860.123456);
    picker.setAbsoluteTime(0.1);
    picker.copy();
    QCOMPARE(clipboard->text(), QString("0.1"));
    picker.setAbsoluteTime(1e300);
    QCOMPARE(picker.absoluteTime() + kUnixToAbsoluteTime,
             double(picker.maximumDateTime().toSecsSinceEpoch()));
    // The shortcut in the picker copies the date, not the field's text.
    picker.setAbsoluteTime(610024800);
    picker.setFocus();
    QTest::keySequence(&picker, QKeySequence::Copy);
    QCOMPARE(clipboard->text(), QString("610024800.0"));

    // What one window copies, another pastes.
    ViewController& other = TestApp::controller(app.newDocument());
    other.paste();
    QCOMPARE(other.ui().textBaseDate->absoluteTime(), 610024800.0);
  }

  void signpostItemsAreHiddenBefore1013() {
    TestApp app(nullptr, "10.12.6");
    QVERIFY(app.settings.setBool("showSignposts", true));
    QVERIFY(app.settings.setBool("fetchSignposts", true));
    ViewController& view = TestApp::controller(app.newDocument());
    QCOMPARE(view.settings().osVersion, 12);
    view.viewDidAppear();
    QVERIFY(!view.settings().showSignposts && !view.settings().fetchSignposts);
    for (std::string_view title : {kShowSignpostsItem, kFetchSignpostsItem}) {
      const QAction* item = MainMenu::itemTitled(view.myViewMenu(), title);
      QVERIFY(!item->isVisible());
      QVERIFY(!item->isEnabled());
    }
    QVERIFY(TestApp::getLog(view));
    const auto args = app.tool().lastArguments();
    QVERIFY(std::find(args.begin(), args.end(), "--signpost") == args.end());
  }

  void formFieldsAreReadClampedAndGoToTheToolWhole() {
    TestApp app;
    ViewController& view = TestApp::controller(app.newDocument());
    QLineEdit* field = view.ui().textTimePeriod;
    field->setText("5000");
    view.textSetPeriod();
    QCOMPARE(field->text(), QString("1000"));
    QCOMPARE(view.ui().periodStep->value(), int64_t{1000});
    view.ui().periodStep->stepBy(1);  // the stepper stops at its limit
    QCOMPARE(field->text(), QString("1000"));
    view.ui().periodStep->stepBy(-3);
    QCOMPARE(view.settings().theTimePeriod, int64_t{997});
    QCOMPARE(field->text(), QString("997"));

    const std::string archive = "/tmp/it's a \"test\"/x.logarchive";
    app.panels.openAnswers.push_back(std::filesystem::path(archive));
    view.setLogarchiveSource();
    QCOMPARE(view.window()->windowTitle(), QString::fromUtf8("\U0001F4D5 x.logarchive"));
    QCOMPARE(view.ui().fileSourceIndicator->text(), QString::fromUtf8("\U0001F4D5"));
    const OpenPanelRequest& asked = app.panels.openRequests.at(0);
    QVERIFY(asked.canChooseDirectories && asked.treatsPackagesAsDirectories);

    view.ui().comboPredicate->lineEdit()->setText({});
    QTest::keyClicks(view.ui().comboPredicate->lineEdit(), "eventMessage CONTAINS \"a b\"");
    QVERIFY(TestApp::getLog(view));
    const auto args = app.tool().lastArguments();
    const std::vector<std::string> form = {"--archive", archive, "--predicate",
                                           "eventMessage CONTAINS \"a b\""};
    QVERIFY(args.size() >= 5 && std::vector(args.begin() + 1, args.begin() + 5) == form);

    // A cancelled panel keeps the source.
    view.setLogarchiveSource();
    QCOMPARE(view.source().theSourcePath, archive);
  }
};

KAVOR_APP_TEST(MainWindowTest);

#include "main_window_test.moc"
