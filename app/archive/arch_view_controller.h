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
#include <stop_token>
#include <string>
#include <string_view>
#include <thread>

#include "app/shell/menu_command_target.h"

namespace Ui {
class ArchWindow;
}

namespace kavor {
class ArchiveOutput;
}

namespace kavor::app {

class AppContext;

class ArchViewController final : public QWidget, public MenuCommandTarget {
  Q_OBJECT

 public:
  explicit ArchViewController(AppContext& app, QWidget* parent = nullptr);
  ~ArchViewController() override;

  // Reads the font size.
  void viewDidLoad();
  // Each time the window appears: its title, both check boxes off.
  void viewDidAppear();

  double theFontSize() const { return theFontSize_; }
  const std::string& outputText() const { return outputText_; }
  Ui::ArchWindow& ui() const { return *ui_; }
  // A tool is at work; its buttons wait.
  bool isRunning() const { return worker_.joinable(); }

  void replaceOutputText(std::string_view text);
  void appendOutputText(std::string_view text);
  void restyleOutput();

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
  void stopTool();

 signals:
  // A tool has ended and the buttons are back.
  void toolFinished();

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  using Work = std::function<void(ArchiveOutput& output, std::stop_token stop)>;
  // Runs work on a thread of its own, the buttons disabled and the progress shown meanwhile.
  void runTool(Work work);
  void finishTool();
  void showProgress(uint64_t done, uint64_t total);
  void setToolsEnabled(bool enabled);
  std::optional<std::filesystem::path> chooseLogarchive();

  AppContext& app_;
  std::unique_ptr<Ui::ArchWindow> ui_;
  double theFontSize_ = 12.0;
  std::string outputText_;           // what the output area shows, as the tools wrote it
  std::atomic<bool> debug_ = false;  // read by the builder at each step
  bool followOutput_ = false;        // the view keeps the newest message in sight
  std::jthread worker_;
};

}  // namespace kavor::app
