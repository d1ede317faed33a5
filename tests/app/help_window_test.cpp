// The help window: the manual made by the build, fitted to the window's width, read again each
// time the window appears, and an empty view when there is no readable manual.

#include <QAction>
#include <QImage>
#include <QPdfDocument>
#include <QPdfPageNavigator>
#include <QPdfView>
#include <QTest>
#include <filesystem>

#include "app/shell/app_delegate.h"
#include "app/shell/help_view_controller.h"
#include "app/shell/main_menu.h"
#include "app/shell/window_controller.h"
#include "tests/app/app_fixture.h"
#include "tests/app/app_test_registry.h"

using namespace kavor;
using namespace kavor::app;
using namespace kavor::app_testing;

namespace {

namespace fs = std::filesystem;

const fs::path kManual = KAVOR_MANUAL_PDF;

HelpViewController* openHelp(TestApp& app) {
  app.context().menu().action(MenuCommand::help)->trigger();
  const WindowControllers& windows = app.context().delegate().myHelpWindow;
  return windows.empty()
             ? nullptr
             : qobject_cast<HelpViewController*>(windows.back()->contentViewController());
}

// Hidden and shown again, as a window restored from the Dock would be.
void showAgain(const HelpViewController& help) {
  help.window()->hide();
  help.window()->show();
}

bool showsNothing(const HelpViewController& help) {
  return !help.thePDFDocument() && !help.helpPDFView()->document();
}

// Some of the view is drawn in something other than the background.
bool drawsInk(QPdfView& view) {
  const QImage image = view.viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32);
  for (int y = 0; y < image.height(); y += 4)
    for (int x = 0; x < image.width(); x += 4)
      if (qGray(image.pixel(x, y)) < 100) return true;
  return false;
}

}  // namespace

class HelpWindowTest : public QObject {
  Q_OBJECT

 private slots:
  void showsTheManualFromItsFirstPageAtTheWindowsWidth() {
    TestApp app;
    app.context().setResourceFolder(kManual.parent_path());
    HelpViewController* opened = openHelp(app);
    QVERIFY(opened);
    HelpViewController& help = *opened;
    QPdfDocument* manual = help.thePDFDocument();
    QVERIFY(manual);
    QCOMPARE(manual->status(), QPdfDocument::Status::Ready);
    QVERIFY(manual->pageCount() > 1);
    QVERIFY(manual->getAllText(0).text().contains("Kavor"));
    QPdfView& view = *help.helpPDFView();
    QCOMPARE(view.document(), manual);
    QCOMPARE(view.pageNavigator()->currentPage(), 0);
    QCOMPARE(view.zoomMode(), QPdfView::ZoomMode::FitToWidth);
    QVERIFY(QTest::qWaitFor([&] { return drawsInk(view); }, 10000));
    QCOMPARE(help.window()->windowTitle(), QString("Kavor Help"));
  }

  void readsTheFileAgainAtEachAppearanceAndStaysEmptyWithoutOne() {
    TempFolder folder;
    TestApp app;
    app.context().setResourceFolder(folder.path());
    HelpViewController* opened = openHelp(app);
    QVERIFY(opened);
    HelpViewController& help = *opened;
    QVERIFY(showsNothing(help));

    const fs::path file = folder.path() / "KavorHelp.pdf";
    writeFile(file, "%PDF-1.4 and nothing a reader can use");
    showAgain(help);
    QVERIFY(showsNothing(help));

    fs::copy_file(kManual, file, fs::copy_options::overwrite_existing);
    showAgain(help);
    QVERIFY(help.thePDFDocument() && help.thePDFDocument()->pageCount() > 1);
    QCOMPARE(help.helpPDFView()->document(), help.thePDFDocument());

    fs::remove(file);
    showAgain(help);
    QVERIFY(showsNothing(help));
    // Nothing is said about a missing manual.
    QVERIFY(app.alerts.shown.empty());
  }
};

KAVOR_APP_TEST(HelpWindowTest);

#include "help_window_test.moc"
