#pragma once
// What the window tests share: a system root (made by the stand-in tool, or a scripted fake
// tool), answers for alerts and panels, and an application context over an in-memory store.

#include <sys/types.h>
#include <QString>
#include <deque>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/shell/alerts.h"
#include "app/shell/app_context.h"
#include "app/shell/file_panels.h"
#include "engine/shell/machine_check_system.h"
#include "platform/clock.h"
#include "platform/settings_store.h"
#include "tests/engine/fake_check_system.h"
#include "tests/platform/temp_folder.h"

namespace kavor::app {
class AppDocument;
class ViewController;
}  // namespace kavor::app

namespace kavor::app_testing {

using testing_support::readFile;
using testing_support::TempFolder;
using testing_support::writeFile;

// A system root laid out by the stand-in tool's make-system, once per version and run.
std::filesystem::path standInRoot(std::string_view macosVersion = "10.15.7");

// A system root whose log tool prints what the test says and records its arguments.
class FakeToolRoot {
 public:
  explicit FakeToolRoot(std::string_view productVersion = "10.15.7");
  const std::filesystem::path& root() const { return folder_.path(); }
  // Exit 0 printing this.
  void printOutput(std::string_view output);
  // Exit with the status, writing this to standard error.
  void failWith(int status, std::string_view standardError);
  // Run until ended, saying its process number first.
  void runEndlessly();
  // The process number of the endless run, once it has said it.
  pid_t runningPid() const;
  // The arguments of the last run, after the program.
  std::vector<std::string> lastArguments() const;

 private:
  TempFolder folder_;
};

class RecordingAlerts final : public app::AlertPresenter {
 public:
  int runModal(const app::Alert& alert, QWidget* parent) override;
  std::vector<app::Alert> shown;
};

class ScriptedPanels final : public app::FilePanels {
 public:
  std::optional<std::filesystem::path> runOpenPanel(const app::OpenPanelRequest& request,
                                                    QWidget* parent) override;
  std::optional<app::SaveChoice> runSavePanel(const app::SavePanelRequest& request,
                                              QWidget* parent) override;
  // Answers in order; an empty queue cancels.
  std::deque<std::optional<std::filesystem::path>> openAnswers;
  std::deque<std::optional<app::SaveChoice>> saveAnswers;
  std::vector<app::OpenPanelRequest> openRequests;
  std::vector<app::SavePanelRequest> saveRequests;
};

// What the start-up checks and the Log Check read: as made, a machine that passes every check;
// after useMachine(), the application's own system root and log tool. Whether the user is an
// administrator is the test's to say either way, never the machine's that runs the tests.
class TestChecks final : public CheckSystem {
 public:
  TestChecks(const std::filesystem::path& root, const Clock& clock)
      : machine_(SystemPaths(root), clock) {}
  void useMachine() { source_ = &machine_; }
  bool administrator = true;

  std::string loginName() override { return "tester"; }
  std::vector<std::string> administratorGroups() override { return {"80"}; }
  Expected<ToolOutput> runGroupTool(const std::string&) override {
    return ToolOutput{0, administrator ? "20 80 12\n" : "20 800 12\n"};
  }
  Expected<ToolOutput> runLogTool(std::span<const std::string_view> args) override {
    return source_->runLogTool(args);
  }
  bool isFolder(std::string_view path) override { return source_->isFolder(path); }
  Expected<std::vector<std::string>> listFolderNames(std::string_view path) override {
    return source_->listFolderNames(path);
  }
  Expected<std::vector<FolderItem>> listFolder(std::string_view path) override {
    return source_->listFolder(path);
  }
  std::optional<std::string> formattedClockSample() override {
    return source_->formattedClockSample();
  }
  double now() override { return source_->now(); }

 private:
  testing_support::FakeCheckSystem passing_;
  MachineCheckSystem machine_;
  CheckSystem* source_ = &passing_;
};

// 2026-11-20 10:00:00 UTC, the tests' "now".
inline constexpr double kTestNow = 816861600.0;

class TestApp {
 public:
  // The application uses store when given, else the in-memory settings below; its system is
  // the one at root, or one of its own whose log tool is scripted through tool().
  explicit TestApp(SettingsStore* store = nullptr, std::string_view productVersion = "10.15.7");
  explicit TestApp(const std::filesystem::path& root, SettingsStore* store = nullptr);
  ~TestApp();

  app::AppContext& context() { return *context_; }
  MemorySettingsStore settings;
  FixedClock clock{kTestNow};
  RecordingAlerts alerts;
  std::unique_ptr<TestChecks> checks;
  ScriptedPanels panels;

  FakeToolRoot& tool() { return *tool_; }
  app::AppDocument* newDocument();
  static app::ViewController& controller(app::AppDocument* document);
  // Presses Get Log and waits until every run has completed.
  static bool getLog(app::ViewController& controller);
  // Lets queued jobs (restyling, deferred deletes) run.
  static void settle();

 private:
  void start(const std::filesystem::path& root, SettingsStore* store);

  std::unique_ptr<FakeToolRoot> tool_;
  std::unique_ptr<app::AppContext> context_;
};

QString viewText(const app::ViewController& controller);

}  // namespace kavor::app_testing
