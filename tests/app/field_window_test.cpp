// The Log Fields window: the lines of the running system's version and the height that fits them.

#include <QAction>
#include <QLabel>
#include <QTest>

#include "app/document/field_view_controller.h"
#include "app/shell/app_delegate.h"
#include "app/shell/main_menu.h"
#include "app/shell/window_controller.h"
#include "engine/shell/menu_texts.h"
#include "tests/app/app_fixture.h"
#include "tests/app/app_test_registry.h"
#include "ui_field_window.h"

using namespace kavor;
using namespace kavor::app;
using namespace kavor::app_testing;

class FieldWindowTest : public QObject {
  Q_OBJECT

 private slots:
  void showsTheFieldsOfTheSystemAndGrowsForTheLongerLists() {
    struct Case {
      const char* version;
      int lines;
      const char* last;
      int growth;
    };
    for (const Case& c :
         {Case{"10.12.6", 16, "15 timezoneName", 0}, Case{"10.13.6", 22, "21 source (null)", 100},
          Case{"10.14.6", 26, "25 source (null)", 170},
          Case{"10.15.7", 26, "25 source (null)", 0}}) {
      TestApp app(nullptr, c.version);
      QAction* item =
          MainMenu::itemTitled(app.context().menu().menuTitled(kWindowsMenuTitle), kLogFieldsItem);
      item->trigger();
      const WindowController& controller = *app.context().delegate().myField.back();
      auto& fields = *static_cast<FieldViewController*>(controller.contentViewController());
      const QStringList lines = fields.ui().FieldTextbox->text().split('\n');
      QCOMPARE(lines.size(), c.lines);
      QCOMPARE(lines.back(), QString(c.last));
      QCOMPARE(lines[1], QString("1 machTimestamp no."));
      QCOMPARE(controller.window()->windowTitle(), QString("Log Fields"));
      QCOMPARE(controller.window()->height(), 400 + c.growth);
    }
  }
};

KAVOR_APP_TEST(FieldWindowTest);
#include "field_window_test.moc"
