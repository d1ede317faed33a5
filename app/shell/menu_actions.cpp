#include "app/shell/menu_actions.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QPlainTextEdit>

#include "app/document/app_document.h"
#include "app/document/document_controller.h"
#include "app/document/graph_view_controller.h"
#include "app/query/copiable_date_picker.h"
#include "app/query/view_controller.h"
#include "app/shell/app_context.h"
#include "app/shell/app_delegate.h"
#include "app/shell/main_menu.h"
#include "app/shell/menu_command_target.h"
#include "app/shell/window_controller.h"

namespace kavor::app {

namespace {

using C = MenuCommand;

void onTriggered(const AppContext& app, MenuCommand command, std::function<void()> handler) {
  QObject::connect(app.menu().action(command), &QAction::triggered, &app.menu(),
                   [handler = std::move(handler)] { handler(); });
}

// The controller of the active window, when it performs this command itself.
MenuCommandTarget* activeTargetFor(MenuCommand command) {
  const WindowController* controller = windowControllerOf(QApplication::activeWindow());
  MenuCommandTarget* target = controller ? controller->commandTarget() : nullptr;
  return target && target->handlesMenuCommand(command) ? target : nullptr;
}

// A command of the main window in front, unless the active window performs it itself; none in
// front, nothing happens.
void forViewController(AppContext& app, MenuCommand command, void (ViewController::*method)()) {
  onTriggered(app, command, [&app, command, method] {
    if (MenuCommandTarget* target = activeTargetFor(command))
      target->performMenuCommand(command);
    else if (ViewController* controller = app.documents().frontViewController())
      (controller->*method)();
  });
}

void forDocument(AppContext& app, MenuCommand command, void (AppDocument::*method)()) {
  onTriggered(app, command, [&app, command, method] {
    if (MenuCommandTarget* target = activeTargetFor(command))
      target->performMenuCommand(command);
    else if (AppDocument* document = app.documents().frontDocument())
      (document->*method)();
  });
}

bool isEditableText(const QWidget* widget) {
  if (const auto* line = qobject_cast<const QLineEdit*>(widget)) return !line->isReadOnly();
  if (const auto* text = qobject_cast<const QPlainTextEdit*>(widget)) return !text->isReadOnly();
  return false;
}

}  // namespace

void copyToClipboard(AppContext&) {
  QWidget* focus = QApplication::focusWidget();
  if (auto* picker = qobject_cast<CopiableDatePicker*>(focus)) {
    picker->copy();
    return;
  }
  // Text fields and the result view copy their selection.
  if (focus && focus->metaObject()->indexOfMethod("copy()") >= 0) {
    QMetaObject::invokeMethod(focus, "copy");
    return;
  }
  // A chart window copies its chosen date.
  if (const WindowController* controller = windowControllerOf(QApplication::activeWindow()))
    if (auto* chart = qobject_cast<GraphViewController*>(controller->contentViewController()))
      chart->copy();
}

void pasteFromClipboard(AppContext& app) {
  QWidget* focus = QApplication::focusWidget();
  if (isEditableText(focus)) {
    QMetaObject::invokeMethod(focus, "paste");
    return;
  }
  if (ViewController* controller = app.documents().frontViewController()) controller->paste();
}

void connectMenuActions(AppContext& app) {
  onTriggered(app, C::enableChartView, [&app] { app.delegate().enableGraphView(); });
  onTriggered(app, C::logarchiveTool, [&app] { app.delegate().openArchWindow(); });
  onTriggered(app, C::logCheck, [&app] { app.delegate().openCheckLog(); });
  onTriggered(app, C::logFields, [&app] { app.delegate().openField(); });
  onTriggered(app, C::preferences, [&app] { app.delegate().openPrefs(); });
  onTriggered(app, C::help, [&app] { app.delegate().openHelp(); });
  onTriggered(app, C::supportPage, [&app] { app.delegate().openSupport(); });
  onTriggered(app, C::releasesPage, [&app] { app.delegate().openUpdates(); });
  onTriggered(app, C::quit, [&app] {
    app.delegate().closeWindows();
    app.documents().closeAll();
    QApplication::quit();
  });
  onTriggered(app, C::newDocument, [&app] { app.documents().newDocument(); });
  onTriggered(app, C::openDocument, [&app] { app.documents().openDocument(); });
  onTriggered(app, C::openJsonLog, [&app] { app.documents().chooseJsonLog(); });
  onTriggered(app, C::closeWindow, [] {
    if (QWidget* window = QApplication::activeWindow()) window->close();
  });
  forDocument(app, C::save, &AppDocument::saveDocument);
  forDocument(app, C::saveAs, &AppDocument::saveDocumentAs);
  forDocument(app, C::openChart, &AppDocument::openGraphView);
  onTriggered(app, C::copy, [&app] { copyToClipboard(app); });
  onTriggered(app, C::paste, [&app] { pasteFromClipboard(app); });

  forViewController(app, C::chooseSource, &ViewController::setLogarchiveSource);
  forViewController(app, C::makeLogarchive, &ViewController::cmdMakeLog);
  forViewController(app, C::saveDefaults, &ViewController::doSaveDefaults);
  forViewController(app, C::getLog, &ViewController::getLogButton);
  forViewController(app, C::limitEntries, &ViewController::setLimit);
  forViewController(app, C::showLogEntries, &ViewController::setShowLogEntries);
  forViewController(app, C::showSignposts, &ViewController::setShowSignposts);
  forViewController(app, C::showActivities, &ViewController::setShowActivities);
  forViewController(app, C::fetchInfo, &ViewController::setFetchInfo);
  forViewController(app, C::fetchSignposts, &ViewController::setFetchSignposts);
  forViewController(app, C::fetchDebug, &ViewController::setFetchDebug);
  forViewController(app, C::biggerFont, &ViewController::incFontSize);
  forViewController(app, C::smallerFont, &ViewController::decFontSize);
  forViewController(app, C::convertToCsv, &ViewController::doConversion);
  forViewController(app, C::showAsTable, &ViewController::setTableMode);
  forViewController(app, C::find, &ViewController::showFind);
  forViewController(app, C::findNext, &ViewController::findNext);
  forViewController(app, C::findPrevious, &ViewController::findPrevious);
  forViewController(app, C::exportPrefs, &ViewController::exportPrefs);
  forViewController(app, C::importPrefs, &ViewController::importPrefs);
}

}  // namespace kavor::app
