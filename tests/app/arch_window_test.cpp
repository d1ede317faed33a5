// The Logarchive Tool window: its three tools through the panels, the save of its output, its
// font size and its check boxes.

#include <QAction>
#include <QCheckBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include "app/archive/arch_view_controller.h"
#include "app/shell/app_delegate.h"
#include "app/shell/main_menu.h"
#include "app/shell/report_area.h"
#include "app/shell/window_controller.h"
#include "engine/archive/archive_texts.h"
#include "tests/app/app_fixture.h"
#include "tests/app/app_test_registry.h"
#include "ui_arch_window.h"

using namespace kavor;
using namespace kavor::app;
using namespace kavor::app_testing;

namespace {

namespace fs = std::filesystem;

ArchViewController& openArch(TestApp& app) {
  app.context().delegate().openArchWindow();
  return *static_cast<ArchViewController*>(
      app.context().delegate().myArchWindow.back()->contentViewController());
}

// Presses a tool's button and waits until the tool has ended.
bool runTool(ArchViewController& arch, void (ArchViewController::*button)()) {
  QSignalSpy finished(&arch, &ArchViewController::toolFinished);
  (arch.*button)();
  if (!arch.isRunning()) return finished.count() == 0;  // cancelled: no tool started
  return finished.wait(60000);
}

}  // namespace

class ArchWindowTest : public QObject {
  Q_OBJECT

 private slots:
  void buildsCataloguesAndAnalysesThroughThePanels() {
    const fs::path root = standInRoot("14.4");
    TestApp app(root);
    TempFolder folder;
    const fs::path archive = folder / "made.logarchive";
    ArchViewController& arch = openArch(app);

    arch.ui().debugCheckbox->setChecked(true);
    app.panels.openAnswers.push_back(root / "var/db");
    app.panels.saveAnswers.push_back(SaveChoice{archive, "com.apple.logarchive"});
    QSignalSpy finished(&arch, &ArchViewController::toolFinished);
    arch.copyButton();
    // While the store is copied the tools wait, and the window is free to do anything else.
    QVERIFY(!arch.ui().copyButton->isEnabled() && !arch.ui().catalogueButton->isEnabled());
    QVERIFY(finished.wait(60000));
    QVERIFY(arch.ui().copyButton->isEnabled());
    QVERIFY(!app.panels.openRequests.back().canChooseFiles);
    const std::string& built = arch.outputText();
    QVERIFY2(built.starts_with("Source: " + (root / "var/db").string() +
                               "\nDestination:" + archive.string() + "\ncopying from "),
             built.c_str());
    QVERIFY(built.ends_with("writing export dictionary to " + archive.string() + "/Info.plist\n"));
    QVERIFY(fs::exists(archive / "Extra/version.plist"));

    app.panels.openAnswers.push_back(archive);
    QVERIFY(runTool(arch, &ArchViewController::catalogueButton));
    QCOMPARE(app.panels.openRequests.back().allowedExtensions,
             std::vector<std::string>{"logarchive"});
    QVERIFY(arch.outputText().starts_with("Catalogue listing of " + archive.string() + " :\n/"));
    QVERIFY(arch.outputText().find("\nPersist/") != std::string::npos);

    arch.ui().csvCheckbox->setChecked(true);
    app.panels.openAnswers.push_back(archive);
    QVERIFY(runTool(arch, &ArchViewController::theAnalyseButton));
    QVERIFY(arch.outputText().starts_with("date,time,totalsize,filename,size,percent,process\n"));
    QVERIFY(arch.outputText().find(".tracev3,") != std::string::npos);

    // A cancelled panel changes nothing.
    const std::string before = arch.outputText();
    QVERIFY(runTool(arch, &ArchViewController::catalogueButton));
    QCOMPARE(arch.outputText(), before);
  }

  void savesTheOutputAndTellsWhyItCouldNot() {
    TestApp app;
    TempFolder folder;
    ArchViewController& arch = openArch(app);
    const fs::path empty = folder / "empty.txt";
    app.panels.saveAnswers.push_back(SaveChoice{empty, "public.plain-text"});
    arch.theSaveButton();
    QVERIFY(fs::exists(empty));
    QCOMPARE(fs::file_size(empty), uintmax_t{0});

    arch.output().replaceOutputText("Catalogue listing of /a b.logarchive :\n\u00a0tab\there\n");
    const fs::path saved = folder / "out.txt";
    writeFile(saved, std::string(5000, 'x'));  // overwritten in place, nothing of it left
    app.panels.saveAnswers.push_back(SaveChoice{saved, "public.plain-text"});
    arch.theSaveButton();
    QCOMPARE(readFile(saved), arch.outputText());

    app.panels.saveAnswers.push_back(SaveChoice{folder / "gone/out.txt", "public.plain-text"});
    arch.theSaveButton();
    QVERIFY(arch.outputText().ends_with("No such file or directory"));
  }

  void fontSizeStepsWithinItsBoundsAndTheMenuReachesTheWindowInFront() {
    TestApp app;
    (void)app.settings.setDouble(kArchFontSizeKey, 72.0);
    ArchViewController& arch = openArch(app);
    QCOMPARE(arch.theFontSize(), 72.0);
    QCOMPARE(arch.ui().outputText->font().pointSizeF(), 72.0);
    // The View menu's commands reach the window in front.
    QVERIFY(QTest::qWaitForWindowActive(arch.window()));
    app.context().menu().action(MenuCommand::biggerFont)->trigger();
    QCOMPARE(arch.theFontSize(), 60.0);
    QCOMPARE(app.settings.doubleValue(kArchFontSizeKey), 60.0);
    QCOMPARE(arch.ui().outputText->font().pointSizeF(), 60.0);
    arch.decFontSize();
    QCOMPARE(arch.theFontSize(), 59.0);
    // So does File > Save: the output, not a main window's document.
    TempFolder folder;
    arch.output().replaceOutputText("report\n");
    app.panels.saveAnswers.push_back(SaveChoice{folder / "saved.txt", "public.plain-text"});
    app.context().menu().action(MenuCommand::save)->trigger();
    QCOMPARE(readFile(folder / "saved.txt"), std::string("report\n"));
  }

  void checkBoxesAreOffEachTimeTheWindowAppears() {
    TestApp app;
    ArchViewController& arch = openArch(app);
    arch.ui().debugCheckbox->setChecked(true);
    arch.ui().csvCheckbox->setChecked(true);
    arch.window()->hide();
    arch.window()->show();
    QVERIFY(!arch.ui().debugCheckbox->isChecked());
    QVERIFY(!arch.ui().csvCheckbox->isChecked());
  }
};

KAVOR_APP_TEST(ArchWindowTest);
#include "arch_window_test.moc"
