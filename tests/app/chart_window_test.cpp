// The activity chart: the chart view's drawing and clicks, and the chart window over a fetch,
// with its bin steps, subsystem menu, titles and PNG image.

#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QImage>
#include <QTest>

#include "app/document/app_document.h"
#include "app/document/chart_view.h"
#include "app/document/document_controller.h"
#include "app/document/graph_view_controller.h"
#include "app/query/view_controller.h"
#include "app/shell/app_delegate.h"
#include "app/shell/main_menu.h"
#include "app/shell/window_controller.h"
#include "engine/shell/menu_texts.h"
#include "tests/app/app_fixture.h"
#include "tests/app/app_test_registry.h"
#include "ui_graph_window.h"

using namespace kavor;
using namespace kavor::app;
using namespace kavor::app_testing;

namespace {

// Kernel, no subsystem, and a name ending in ".", inside the window of a Get Log at kTestNow.
constexpr std::string_view kFourEntries = R"([
{"timestamp" : "2026-11-20 09:59:41.000000+0000", "processID" : 0, "subsystem" : "com.apple.x"},
{"timestamp" : "2026-11-20 09:59:45.000000+0000", "processID" : 12},
{"timestamp" : "2026-11-20 09:59:50.000000+0000", "processID" : 13, "subsystem" : "com.example."},
{"timestamp" : "2026-11-20 09:59:59.000000+0000", "processID" : 13, "subsystem" : "com.example."}
])";

QAction* openChartItem(TestApp& app) {
  return MainMenu::itemTitled(app.context().menu().menuTitled(kWindowsMenuTitle), kOpenChartItem);
}

// A fetch whose chart data is ready.
AppDocument* fetchedDocument(TestApp& app) {
  AppDocument* document = app.newDocument();
  app.tool().printOutput(kFourEntries);
  if (!TestApp::getLog(TestApp::controller(document))) return nullptr;
  if (!QTest::qWaitFor([&] { return !document->record().popSSystTypes.empty(); }, 10000))
    return nullptr;
  return document;
}

// A window whose fetch has its chart data ready.
struct Fetched {
  TestApp app;
  AppDocument* document = fetchedDocument(app);
};

GraphViewController& openChart(AppDocument* document) {
  document->openGraphView();
  auto* content = document->windowControllers().back()->contentViewController();
  return *qobject_cast<GraphViewController*>(content);
}

void clickChart(ChartView& view, Qt::MouseButton button, int times,
                Qt::KeyboardModifiers modifiers = {}) {
  for (int i = 0; i < times; ++i)
    QTest::mouseClick(&view, button, modifiers, QPoint(10, 50));
}

}  // namespace

class ChartWindowTest : public QObject {
  Q_OBJECT

 private slots:
  void drawsBarsTooltipsAndTheDate() {
    ChartView view;
    view.resize(300, 110);
    view.logBarValue = {0, 3, 1};
    view.logBarLabel = {"a", "b", "c"};
    view.logBarDate = {100, 200, 300};
    view.theReturnedDate = 0;
    (void)view.grab();
    const auto& rects = view.tooltipRects();
    QCOMPARE(rects.size(), size_t{3});
    // The layout's heights, drawn up from the bottom.
    QCOMPARE(rects[1], QRectF(100, 4, 100, 100));
    QCOMPARE(view.theTooltipList, (std::vector<QString>{"a", "b", "c"}));
    QCOMPARE(view.topLineText(), QString("2001-01-01 00:00:00.000+0000"));

    view.logBarValue = {0, 0, 0};
    (void)view.grab();
    QVERIFY(view.tooltipRects().empty() && view.theTooltipTags.empty());
    QVERIFY(!view.topLineText().isEmpty());
  }

  void commandClickPicksABinAndCopiesItsDate() {
    ChartView view;
    view.resize(300, 110);
    view.logBarValue = {1, 1, 1};
    view.logBarDate = {627214800.0, 627214830.5, 627214860.0};
    QTest::mouseClick(&view, Qt::LeftButton, Qt::ControlModifier, QPoint(299, 50));
    QCOMPARE(view.theReturnedDate, 627214860.0);
    QTest::mouseClick(&view, Qt::LeftButton, Qt::ControlModifier, QPoint(0, 50));
    QCOMPARE(view.theReturnedDate, 627214800.0);
    QTest::mouseClick(&view, Qt::LeftButton, Qt::ControlModifier | Qt::ShiftModifier,
                      QPoint(150, 50));
    QCOMPARE(view.theReturnedDate, 627214830.5);
    QCOMPARE(QGuiApplication::clipboard()->text(), QString("627214830.5"));
  }

  void openChartAppearsWhenChartDataIsReady() {
    Fetched fetched;
    TestApp& app = fetched.app;
    AppDocument* document = fetched.document;
    QVERIFY(document);
    QVERIFY(openChartItem(app)->isVisible() && openChartItem(app)->isEnabled());

    openChartItem(app)->trigger();
    openChartItem(app)->trigger();
    QCOMPARE(document->windowControllers().size(), size_t{3});

    app.newDocument();
    QVERIFY(!openChartItem(app)->isVisible() && !openChartItem(app)->isEnabled());

    // Chart windows close with their document.
    QVERIFY(document->windowControllers().front()->window()->close());
    TestApp::settle();
    QCOMPARE(app.context().documents().documents().size(), size_t{1});
  }

  void noChartWhileTheChartViewIsOff() {
    TestApp app;
    QVERIFY(app.settings.setBool("dontShowGraphView", true));
    QVERIFY(app.context().delegate().applicationDidFinishLaunching());
    AppDocument* document = app.newDocument();
    app.tool().printOutput(kFourEntries);
    QVERIFY(TestApp::getLog(TestApp::controller(document)));
    TestApp::settle();
    QVERIFY(document->record().popSSystTypes.empty());
    QVERIFY(!openChartItem(app)->isVisible());

    // A chart window without data keeps its empty menu and draws the base line only.
    GraphViewController& chart = openChart(document);
    (void)chart.chartView().grab();
    QCOMPARE(chart.ui().susystPopup->count(), 0);
    QVERIFY(chart.chartView().tooltipRects().empty());
    clickChart(chart.chartView(), Qt::LeftButton, 3);
    QCOMPARE(document->record().theNoBins, int64_t{50});
  }

  void binStepsSubsystemTitlesAndThePng() {
    Fetched fetched;
    TestApp& app = fetched.app;
    AppDocument* document = fetched.document;
    QVERIFY(document);
    GraphViewController& chart = openChart(document);
    ChartView& view = chart.chartView();
    clickChart(view, Qt::LeftButton, 31);
    QCOMPARE(document->record().theNoBins, int64_t{81});
    QCOMPARE(view.logBarValue.size(), size_t{81});
    clickChart(view, Qt::LeftButton, 115, Qt::AltModifier);  // other modifiers: still a plain click
    QCOMPARE(document->record().theNoBins, int64_t{191});
    clickChart(view, Qt::RightButton, 180);
    QCOMPARE(document->record().theNoBins, int64_t{19});
    QCOMPARE(view.logBarValue.size(), size_t{19});
    QCOMPARE(view.logSSystCount, int64_t{4});

    const QString name = QString::fromStdString(document->displayName());
    QCOMPARE(chart.window()->windowTitle(), QString::fromUtf8("\U0001F4CA All ") + name);
    QComboBox* menu = chart.ui().susystPopup;
    QCOMPARE(menu->count(), 4);
    const std::vector<std::pair<int, QString>> choices = {{1, "*kernel*"}, {2, "[nil]"}, {3, ""}};
    for (const auto& [index, shown] : choices) {
      menu->setCurrentIndex(index);
      emit menu->activated(index);
      QCOMPARE(chart.window()->windowTitle(),
               QString::fromUtf8("\U0001F4CA ") + shown + " " + name);
    }
    QCOMPARE(view.logSSystCount, int64_t{2});  // the two of "com.example."

    chart.copy();
    QCOMPARE(QGuiApplication::clipboard()->text(), QString("816861580.0"));

    // The PNG image shows the subsystem instead of the date.
    menu->setCurrentIndex(1);
    emit menu->activated(1);
    const QImage png = QImage::fromData(chart.pngOfChart(), "PNG");
    QVERIFY(!png.isNull());
    QVERIFY(view.drawString);
    view.drawString = false;
    const QImage withName = view.grab().toImage();
    QCOMPARE(view.topLineText(), QString("*kernel*"));
    view.drawString = true;
    const QImage withDate = view.grab().toImage();
    QVERIFY(view.topLineText().startsWith("2026-11-20 09:59:40.000"));
    QCOMPARE(png.convertToFormat(withName.format()), withName);
    QVERIFY(png.convertToFormat(withDate.format()) != withDate);

    TempFolder folder;
    const auto file = folder.path() / "chart.png";
    app.panels.saveAnswers.push_back(SaveChoice{file, "public.png"});
    chart.writePNGFile();
    const SavePanelRequest& asked = app.panels.saveRequests.at(0);
    QCOMPARE(asked.title, std::string("Save as PNG file"));
    QCOMPARE(asked.proposedName, document->displayName());
    QVERIFY(readFile(file).starts_with("\x89PNG"));
  }
};

KAVOR_APP_TEST(ChartWindowTest);

#include "chart_window_test.moc"
