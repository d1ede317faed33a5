#pragma once
// The Logarchive Tool window's controller: one output area that the catalogue, the statistics
// analysis and the logarchive builder write into, their buttons and check boxes, the save of
// the output and its font size. The tools work off the main thread, one at a time per window,
// so that a store of gigabytes being copied never holds the window; their output reaches it
// in the order they write it.

#include <QWidget>
#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

#include "app/shell/menu_command_target.h"

namespace Ui {
class ArchWindow;
}

namespace kavor {
class ArchiveOutput;
}

namespace kavor::app {

class AppContext;
class BackgroundWork;
class ReportArea;

class ArchViewController final : public QWidget, public MenuCommandTarget {
  Q_OBJECT

 public:
  explicit ArchViewController(AppContext& app, QWidget* parent = nullptr);
  ~ArchViewController() override;

  // Reads the font size.
  void viewDidLoad();
  // Each time the window appears: its title, both check boxes off.
  void viewDidAppear();

  Ui::ArchWindow& ui() const { return *ui_; }
  ReportArea& output() const { return *output_; }
  double theFontSize() const;
  const std::string& outputText() const;
  // A tool is at work; its buttons wait.
  bool isRunning() const;

  bool handlesMenuCommand(MenuCommand command) const override;
  void performMenuCommand(MenuCommand command) override;

 public slots:
  void catalogueButton();
  void theAnalyseButton();
  void copyButton();
  void theSaveButton();
  void incFontSize();
  void decFontSize();
  // Asks the tool at work to stop; what it wrote stays.
  void stopWork();

 signals:
  // A tool has ended and the buttons are back.
  void toolFinished();

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  using Tool = std::function<void(ArchiveOutput& output, std::stop_token stop)>;
  // Runs the tool off the main thread, the buttons disabled and the progress shown meanwhile.
  void runTool(Tool tool);
  void finishTool();
  void showProgress(uint64_t done, uint64_t total);
  void setToolsEnabled(bool enabled);
  std::optional<std::filesystem::path> chooseLogarchive();

  AppContext& app_;
  std::unique_ptr<Ui::ArchWindow> ui_;
  std::unique_ptr<ReportArea> output_;
  std::atomic<bool> debug_ = false;  // read by the builder at each step
  // Last, so that it goes first: the tool at work stops before anything it reads is gone.
  std::unique_ptr<BackgroundWork> work_;
};

}  // namespace kavor::app
