#pragma once
// A window and the controller of its content, as the interface definition makes them from an
// identifier. A document's windows are window controllers of that document.

#include <QMainWindow>
#include <QObject>
#include <QPointer>
#include <memory>

namespace kavor::app {

class AppDocument;
class MenuCommandTarget;
class WindowController;

// The window class every controller's window derives from: it knows its controller, and tells
// it when it closes.
class ControllerWindow : public QMainWindow {
  Q_OBJECT

 public:
  explicit ControllerWindow(QWidget* parent = nullptr);
  WindowController* windowController() const { return controller_; }
  void setWindowController(WindowController* controller) { controller_ = controller; }

 signals:
  void activated();

 protected:
  bool event(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  WindowController* controller_ = nullptr;
};

class WindowController final : public QObject {
  Q_OBJECT

 public:
  // The window takes the content as its central widget.
  WindowController(std::unique_ptr<ControllerWindow> window, QWidget* contentViewController);
  ~WindowController() override;

  ControllerWindow* window() const { return window_.get(); }
  QWidget* contentViewController() const { return content_; }

  AppDocument* document() const { return document_; }
  void setDocument(AppDocument* document) { document_ = document; }

  // The content controller's own menu commands, when it has some.
  MenuCommandTarget* commandTarget() const { return commandTarget_; }
  void setCommandTarget(MenuCommandTarget* target) { commandTarget_ = target; }

  // Shows the window in front and makes it the active window.
  void showWindow();

 signals:
  // The user closed the window; the owner decides what goes with it.
  void windowWillClose(kavor::app::WindowController* controller);

 private:
  friend class ControllerWindow;
  std::unique_ptr<ControllerWindow> window_;
  QPointer<QWidget> content_;
  AppDocument* document_ = nullptr;
  MenuCommandTarget* commandTarget_ = nullptr;
};

// The controller of the widget's window, or none (no widget, or a window no controller made).
WindowController* windowControllerOf(const QWidget* widget);

}  // namespace kavor::app
