#include "tests/app/app_fixture.h"

#include <QApplication>
#include <QCoreApplication>
#include <QTest>
#include <map>

#include "app/document/app_document.h"
#include "app/document/document_controller.h"
#include "app/query/result_view.h"
#include "app/query/view_controller.h"
#include "engine/document/shown_result.h"
#include "engine/shell/update_texts.h"
#include "platform/child_process.h"
#include "tests/platform/process_state.h"

namespace kavor::app_testing {

namespace fs = std::filesystem;

fs::path standInRoot(std::string_view macosVersion) {
  static TempFolder folder;
  static std::map<std::string, fs::path, std::less<>> made;
  if (auto found = made.find(macosVersion); found != made.end()) return found->second;
  const fs::path root = folder.path() / macosVersion;
  StringSink output;
  const std::vector<std::string> args{"make-system", root.string(), "--macos",
                                      std::string(macosVersion)};
  const auto exit = runChildProcess(KAVOR_LOG_TOOL, args, output);
  if (!exit || exit->status != 0) qFatal("make-system failed for %s", root.c_str());
  made.emplace(std::string(macosVersion), root);
  return root;
}

namespace {

// Answers from files beside it, so that a test can change what the next run does.
constexpr std::string_view kFakeTool = R"sh(#!/bin/sh
here=$(dirname "$0")
printf '%s\0' "$@" > "$here/log.args"
if [ -f "$here/log.endless" ]; then
  echo $$ > "$here/log.pid"
  exec sleep 1000
fi
if [ -f "$here/log.status" ]; then
  cat "$here/log.stderr" >&2
  exit "$(cat "$here/log.status")"
fi
cat "$here/log.out"
)sh";

}  // namespace

FakeToolRoot::FakeToolRoot(std::string_view productVersion) {
  const fs::path tool = root() / "usr/bin/log";
  writeFile(tool, kFakeTool);
  fs::permissions(tool, fs::perms::owner_all);
  writeFile(root() / "System/Library/CoreServices/SystemVersion.plist",
            std::string(R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict><key>ProductVersion</key><string>)") +
                std::string(productVersion) + "</string></dict></plist>\n");
  printOutput("[]");
}

void FakeToolRoot::printOutput(std::string_view output) {
  fs::remove(root() / "usr/bin/log.status");
  writeFile(root() / "usr/bin/log.out", output);
}

void FakeToolRoot::failWith(int status, std::string_view standardError) {
  writeFile(root() / "usr/bin/log.status", std::to_string(status));
  writeFile(root() / "usr/bin/log.stderr", standardError);
}

void FakeToolRoot::runEndlessly() {
  writeFile(root() / "usr/bin/log.endless", "");
}

pid_t FakeToolRoot::runningPid() const {
  return testing_support::waitForPidFile(root() / "usr/bin/log.pid");
}

std::vector<std::string> FakeToolRoot::lastArguments() const {
  const std::string bytes = readFile(root() / "usr/bin/log.args");
  std::vector<std::string> args;
  size_t at = 0;
  while (at < bytes.size()) {
    const size_t end = bytes.find('\0', at);
    args.push_back(bytes.substr(at, end - at));
    at = end + 1;
  }
  return args;
}

int RecordingAlerts::runModal(const app::Alert& alert, QWidget*) {
  shown.push_back(alert);
  return 0;
}

std::optional<fs::path> ScriptedPanels::runOpenPanel(const app::OpenPanelRequest& request,
                                                     QWidget*) {
  openRequests.push_back(request);
  if (openAnswers.empty()) return std::nullopt;
  auto answer = openAnswers.front();
  openAnswers.pop_front();
  return answer;
}

std::optional<app::SaveChoice> ScriptedPanels::runSavePanel(const app::SavePanelRequest& request,
                                                            QWidget*) {
  saveRequests.push_back(request);
  if (saveAnswers.empty()) return std::nullopt;
  auto answer = saveAnswers.front();
  saveAnswers.pop_front();
  return answer;
}

TestApp::TestApp(SettingsStore* store, std::string_view productVersion)
    : tool_(std::make_unique<FakeToolRoot>(productVersion)) {
  start(tool_->root(), store);
}

TestApp::TestApp(const fs::path& root, SettingsStore* store) {
  start(root, store);
}

void TestApp::start(const fs::path& root, SettingsStore* store) {
  SettingsStore& used = store ? *store : settings;
  // Tests never reach the internet: the launch's update check is off, and a test that turns it
  // on without a server of its own reaches only a closed local port. A store that cannot be
  // written keeps the values for the run all the same.
  (void)used.setBool(kNoUpdateCheckKey, true);
  (void)used.setString(kUpdateFeedAddressKey, "http://127.0.0.1:9/");
  checks = std::make_unique<TestChecks>(root, clock);
  context_ = std::make_unique<app::AppContext>(
      app::AppServices{used, SystemPaths(root), clock, alerts, panels, *checks});
}

TestApp::~TestApp() {
  context_.reset();
  settle();
}

app::AppDocument* TestApp::newDocument() {
  return context_->documents().newDocument();
}

app::ViewController& TestApp::controller(app::AppDocument* document) {
  return *document->viewController();
}

bool TestApp::getLog(app::ViewController& controller) {
  controller.getLogButton();
  return QTest::qWaitFor([&] { return controller.runsInFlight() == 0 && !controller.restyling(); },
                         20000);
}

void TestApp::settle() {
  QCoreApplication::processEvents();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  QCoreApplication::processEvents();
}

QString viewText(const app::ViewController& controller) {
  const ShownResult* shown = controller.resultView().result();
  return shown ? QString::fromStdString(shown->text()) : QString();
}

}  // namespace kavor::app_testing
