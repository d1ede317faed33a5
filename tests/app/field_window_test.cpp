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
    // The lines themselves are the field table's, checked by the kavor-cli fields cases.
    for (const auto& [version, lines, growth] : {std::tuple{"10.12.6", 16, 0},
                                                 {"10.13.6", 22, 100},
                                                 {"10.14.6", 26, 170},
                                                 {"10.15.7", 26, 0}}) {
      TestApp app(nullptr, version);
      QAction* item =
          MainMenu::itemTitled(app.context().menu().menuTitled(kWindowsMenuTitle), kLogFieldsItem);
      item->trigger();
      const WindowController& controller = *app.context().delegate().myField.back();
      auto& fields = *static_cast<FieldViewController*>(controller.contentViewController());
      QCOMPARE(fields.ui().FieldTextbox->text().split('\n').size(), lines);
      QCOMPARE(controller.window()->height(), 400 + growth);
    }
  }
};

KAVOR_APP_TEST(FieldWindowTest);
#include "field_window_test.moc"
