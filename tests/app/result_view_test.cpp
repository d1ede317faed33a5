// The result view and the table against the engine: lines and colours as the styler made them,
// copy across lines, the line count, columns that follow the style, and the detail pane.

#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSplitter>
#include <QTableView>
#include <QTest>
#include <QTreeWidget>

#include "app/document/app_document.h"
#include "app/query/entry_detail_view.h"
#include "app/query/result_view.h"
#include "app/query/view_controller.h"
#include "app/shell/colour_scheme.h"
#include "app/shell/window_controller.h"
#include "engine/core/text_colours.h"
#include "engine/query/entry_styler.h"
#include "tests/app/app_fixture.h"
#include "tests/app/app_test_registry.h"
#include "ui_document_window.h"

using namespace kavor;
using namespace kavor::app;
using namespace kavor::app_testing;

namespace {

// The worked example first; then characters of two and four UTF-16 units, a message of two
// lines, and an entry with a nested source and the largest trace ID.
constexpr std::string_view kEntries = R"([
{"timestamp" : "2020-05-01 09:41:07.123456+0100", "messageType" : "Default", "threadID" : 4711,
 "processID" : 85, "subsystem" : "com.apple.xpc", "eventMessage" : "hello", "eventType" : "logEvent"},
{"timestamp" : "2020-05-01 09:41:08.000002+0100", "messageType" : "Error", "threadID" : 12,
 "processID" : 7, "subsystem" : "com.ex\u00e4mple.\ud83d\ude00disk", "eventMessage" : "na\u00efve \ud83d\ude00 text"},
{"timestamp" : "2020-05-01 09:41:09.000003+0100", "messageType" : "Info", "threadID" : 3,
 "processID" : 9, "subsystem" : "com.example.sign", "eventType" : "logEvent",
 "eventMessage" : "third entry, whose message runs past twenty-one characters",
 "traceID" : 18446744073709551615, "bootUUID" : "A1B2",
 "source" : {"symbol" : "main", "line" : 42, "image" : {"path" : "\/usr\/bin\/x"}}},
{"timestamp" : "2020-05-01 09:41:10.000004+0100", "messageType" : "Default", "threadID" : 1,
 "processID" : 1, "subsystem" : "", "eventMessage" : "first\nsecond"}
])";

constexpr std::string_view kWorkedStyle = "0hr 2g 6b 9b 4r 10";

// Types a style into the box as the user does, and lets the restyle run.
void typeStyle(ViewController& view, std::string_view style) {
  QLineEdit* typed = view.ui().comboStyle->lineEdit();
  typed->setText({});
  QTest::keyClicks(typed, QString::fromUtf8(style.data(), static_cast<qsizetype>(style.size())));
  QTest::keyClick(typed, Qt::Key_Return);
  TestApp::settle();
}

// A window that fetched the entries, shown in the style.
ViewController& fetched(TestApp& app, std::string_view style = kWorkedStyle) {
  ViewController& view = TestApp::controller(app.newDocument());
  app.tool().printOutput(kEntries);
  if (!TestApp::getLog(view)) qFatal("Get Log did not complete");
  typeStyle(view, style);
  return view;
}

struct Piece {
  int start;
  int length;
  QColor colour;
  bool operator==(const Piece&) const = default;
};

int units(std::string_view utf8) {
  return static_cast<int>(
      QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size())).size());
}

// Checks every line the view paints against the styler's text and runs for the same style.
void compareWithStyler(const ViewController& view, std::string_view style) {
  StylerInput input;
  input.entries = view.document()->record().theJSONDictionaries.get();
  input.styleText = style;
  input.osVersion = view.settings().osVersion;
  const StyledEntries styled = styleEntries(input);
  const std::string& text = styled.text.text;
  const ResultView& painted = view.resultView();
  const bool dark = prefersDarkColours(painted.palette());
  QCOMPARE(painted.result()->lineCount(), size_t(std::count(text.begin(), text.end(), '\n') + 1));
  size_t begin = 0;
  for (size_t line = 0; begin < text.size(); ++line) {
    const size_t end = text.find('\n', begin);
    const auto [shown, formats] = painted.paintedLine(line);
    QCOMPARE(shown, QString::fromStdString(text.substr(begin, end - begin)));
    std::vector<Piece> expected;
    for (const ColourRun& run : styled.text.runs) {
      // The line's part of the run: a message's own break splits its piece over two lines.
      const size_t from = std::max(run.begin, begin);
      const size_t to = std::min(run.begin + run.length, end);
      if (from >= to) continue;
      const Rgb rgb = colourValue(run.colour, dark);
      expected.push_back({units(std::string_view(text).substr(begin, from - begin)),
                          units(std::string_view(text).substr(from, to - from)),
                          QColor(rgb.red, rgb.green, rgb.blue)});
    }
    std::vector<Piece> actual;
    for (const auto& format : formats)
      actual.push_back({format.start, format.length, format.format.foreground().color()});
    QVERIFY2(actual == expected, qPrintable(QString("line %1").arg(line)));
    begin = end + 1;
  }
}

}  // namespace

class ResultViewTest : public QObject {
  Q_OBJECT

 private slots:
  void linesAndColoursAreTheStylersAcrossARestyle() {
    TestApp app;
    ViewController& view = fetched(app);
    const auto [first, formats] = view.resultView().paintedLine(0);
    QCOMPARE(first, QString("09:41:07.123456 Default 4711 85 com.apple.xpc hello "));
    QCOMPARE(formats.size(), 5);
    compareWithStyler(view, kWorkedStyle);
    // A message's own line break makes two lines: the label counts lines, not entries.
    QCOMPARE(view.ui().lineCount->text(), QString("5"));

    typeStyle(view, "0d 10tr 4b");
    QCOMPARE(view.resultView().paintedLine(0).first,
             QString("2020-05-01 09:41:07.123456 hello com.apple.xpc "));
    compareWithStyler(view, "0d 10tr 4b");
    QCOMPARE(view.ui().lineCount->text(), QString("5"));
  }

  void copyOfASelectionOverThreeLines() {
    TestApp app;
    ViewController& view = fetched(app);
    ResultView& text = view.resultView();
    QGuiApplication::clipboard()->clear();
    text.setFocus();  // Ctrl+C is Edit > Copy, which copies from the focused widget
    QTest::keyClick(&text, Qt::Key_Home, Qt::ControlModifier);
    for (int i = 0; i < 3; ++i)
      QTest::keyClick(&text, Qt::Key_Right);
    QTest::keyClick(&text, Qt::Key_Down, Qt::ShiftModifier);
    QTest::keyClick(&text, Qt::Key_Down, Qt::ShiftModifier);
    QTest::keyClick(&text, Qt::Key_End, Qt::ShiftModifier);
    QTest::keyClick(&text, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(),
             QString::fromUtf8("41:07.123456 Default 4711 85 com.apple.xpc hello \n"
                               "09:41:08.000002 Error 12 7 com.ex\u00e4mple.\U0001F600disk "
                               "na\u00efve \U0001F600 text \n"
                               "09:41:09.000003 Info 3 9 com.example.sign third entry, whose "
                               "message runs past twenty-one characters "));
  }

  void tableColumnsFollowTheStyle() {
    TestApp app;
    ViewController& view = fetched(app);
    view.setTableMode();
    const QAbstractItemModel& model = *view.ui().resultTable->model();
    const auto headers = [&] {
      QStringList all;
      for (int column = 0; column < model.columnCount(); ++column)
        all << model.headerData(column, Qt::Horizontal).toString();
      return all;
    };
    const auto cell = [&](int row, int column, int role = Qt::DisplayRole) {
      return model.data(model.index(row, column), role);
    };
    QCOMPARE(model.rowCount(), 4);
    QCOMPARE(headers(), QStringList({"timestamp", "messageType", "threadID", "processID",
                                     "subsystem", "eventMessage"}));
    QCOMPARE(cell(0, 0).toString(), QString("09:41:07.123456"));
    QCOMPARE(cell(1, 4).toString(), QString::fromUtf8("com.ex\u00e4mple.\U0001F600disk"));
    const bool dark = prefersDarkColours(view.ui().resultTable->palette());
    const auto colour = [&](TextColour c) {
      const Rgb rgb = colourValue(c, dark);
      return QColor(rgb.red, rgb.green, rgb.blue);
    };
    QCOMPARE(cell(0, 0, Qt::ForegroundRole).value<QColor>(), colour(TextColour::red));
    QCOMPARE(cell(0, 1, Qt::ForegroundRole).value<QColor>(), colour(TextColour::green));
    QCOMPARE(cell(0, 3, Qt::ForegroundRole).value<QColor>(), colour(TextColour::blue));
    QVERIFY(!cell(0, 5, Qt::ForegroundRole).isValid());

    typeStyle(view, "10tg 0d");
    QCOMPARE(headers(), QStringList({"eventMessage", "timestamp"}));
    QCOMPARE(cell(2, 0).toString(), QString("third entry, whose me"));
    QCOMPARE(cell(2, 0, Qt::ForegroundRole).value<QColor>(), colour(TextColour::green));
    QCOMPARE(cell(2, 1).toString(), QString("2020-05-01 09:41:09.000003"));
  }

  void columnsFitTheirContentAndStayResizable() {
    TestApp app;
    ViewController& view = fetched(app, "6 4 0");
    view.setTableMode();
    QTableView& table = *view.ui().resultTable;
    QHeaderView& header = *table.horizontalHeader();
    // The thread IDs are narrow, the subsystems wide: each column as wide as its widest cell.
    QVERIFY(table.columnWidth(0) < table.columnWidth(1));
    QVERIFY(table.columnWidth(1) > table.fontMetrics().horizontalAdvance("com.example.sign"));
    QCOMPARE(header.sectionResizeMode(0), QHeaderView::Interactive);
    QCOMPARE(header.sectionViewportPosition(2) + header.sectionSize(2), header.viewport()->width());
    header.resizeSection(0, 333);
    QCOMPARE(table.columnWidth(0), 333);
    // A restyle fits the new columns.
    typeStyle(view, "4 6 0");
    QVERIFY(table.columnWidth(0) > table.columnWidth(1));
  }

  void detailPaneShowsEveryFieldExactly() {
    TestApp app;
    ViewController& view = fetched(app);
    view.setTableMode();
    view.ui().resultTable->selectRow(2);
    const EntryDetailView& pane = *view.ui().entryDetail;
    QVERIFY(pane.isVisible());
    const QTreeWidget& tree = *pane.tree();
    QStringList keys;
    const QTreeWidgetItem* source = nullptr;
    for (int i = 0; i < tree.topLevelItemCount(); ++i) {
      const QTreeWidgetItem* item = tree.topLevelItem(i);
      keys << item->text(0);
      if (item->text(0) == "source") source = item;
      if (item->text(0) == "traceID") QCOMPARE(item->text(1), QString("18446744073709551615"));
    }
    keys.sort();
    QCOMPARE(keys, QStringList({"bootUUID", "eventMessage", "eventType", "messageType", "processID",
                                "source", "subsystem", "threadID", "timestamp", "traceID"}));
    QVERIFY(source && source->childCount() == 3);
    QCOMPARE(source->child(1)->text(0) + "=" + source->child(1)->text(1), QString("line=42"));
    QCOMPARE(source->child(2)->child(0)->text(1), QString("/usr/bin/x"));

    // A double click on a line of the text opens the same pane for that line's entry.
    view.setTableMode();
    ResultView& text = view.resultView();
    const int lineHeight = QFontMetrics(text.font()).lineSpacing();
    QTest::mouseDClick(text.viewport(), Qt::LeftButton, {},
                       QPoint(20, lineHeight + lineHeight / 2));
    QCOMPARE(tree.topLevelItemCount(), 6);
    QCOMPARE(tree.topLevelItem(0)->text(1), QString("2020-05-01 09:41:08.000002+0100"));
  }

  void detailButtonsStayWholeWhateverTheTitle() {
    TestApp app;
    ViewController& view = fetched(app);
    EntryDetailView& pane = *view.ui().entryDetail;
    const auto* copy = pane.findChild<QPushButton*>();
    QVERIFY(copy);
    // A title longer than the window is wide must not make the pane wider than its buttons.
    pane.showEntry(*view.document()->record().theJSONDictionaries, 2, QString(300, 'x'));
    QVERIFY2(pane.minimumSizeHint().width() < 3 * copy->sizeHint().width(),
             qPrintable(QString::number(pane.minimumSizeHint().width())));
    QWidget* window = view.window();
    window->resize(window->minimumSizeHint().width(), window->height());
    TestApp::settle();
    const QRect shown = QRect(copy->mapTo(window, QPoint(0, 0)), copy->size());
    QVERIFY(copy->isVisible() && window->rect().contains(shown));
    QVERIFY(copy->width() >= copy->sizeHint().width());
  }
};

KAVOR_APP_TEST(ResultViewTest);

#include "result_view_test.moc"
