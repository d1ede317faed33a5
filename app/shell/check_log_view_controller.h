#pragma once
// The Log Check window's controller: a short report on the health of the live log store, built
// anew each time the window appears, in the window's own font size. The report asks the log
// tool for two seconds of log, so it is built off the main thread; the window shows its heading
// meanwhile.

#include <QWidget>
#include <memory>
#include <string>

#include "app/shell/menu_command_target.h"

namespace Ui {
class CheckLogWindow;
}

namespace kavor::app {

class AppContext;
class BackgroundWork;
class ReportArea;

class CheckLogViewController final : public QWidget, public MenuCommandTarget {
  Q_OBJECT

 public:
  explicit CheckLogViewController(AppContext& app, QWidget* parent = nullptr);
  ~CheckLogViewController() override;

  // Reads the font size.
  void viewDidLoad();
  // Each time the window appears: the report anew.
  void viewDidAppear();

  Ui::CheckLogWindow& ui() const { return *ui_; }
  ReportArea& output() const { return *output_; }
  double theFontSize() const;
  bool isChecking() const;

  bool handlesMenuCommand(MenuCommand command) const override;
  void performMenuCommand(MenuCommand command) override;

 public slots:
  void runLogCheck();
  void incFontSize();
  void decFontSize();

 signals:
  // The report is in the window.
  void reportShown();

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  AppContext& app_;
  std::unique_ptr<Ui::CheckLogWindow> ui_;
  std::unique_ptr<ReportArea> output_;
  std::unique_ptr<BackgroundWork> work_;  // last: it stops first
};

}  // namespace kavor::app
