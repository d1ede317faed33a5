#include "app/archive/arch_view_controller.h"

#include <QFontDatabase>
#include <QPointer>
#include <QProgressBar>
#include <QScrollBar>
#include <QTextCursor>
#include <utility>

#include "app/shell/app_context.h"
#include "app/shell/file_panels.h"
#include "app/shell/qt_text.h"
#include "engine/archive/archive_output.h"
#include "engine/archive/archive_texts.h"
#include "engine/archive/log_store_catalogue.h"
#include "engine/archive/logarchive_builder.h"
#include "engine/archive/statistics_analysis.h"
#include "engine/shell/report_font_size.h"
#include "platform/file_bytes.h"
#include "ui_arch_window.h"

namespace kavor::app {

namespace {

// The output of a tool at work: each piece reaches the window through the main thread, after
// the pieces before it. A window that has gone takes nothing.
class PostedOutput final : public ArchiveOutput {
 public:
  PostedOutput(MainThread& main, QPointer<ArchViewController> window)
      : main_(main), window_(std::move(window)) {}

  void replaceOutputText(std::string_view text) override {
    main_.post([window = window_, text = std::string(text)] {
      if (window) window->replaceOutputText(text);
    });
  }
  void appendOutputText(std::string_view text) override {
    main_.post([window = window_, text = std::string(text)] {
      if (window) window->appendOutputText(text);
    });
  }

 private:
  MainThread& main_;
  QPointer<ArchViewController> window_;
};

// Where a log store is found on this system: its var/db under the system root.
std::filesystem::path logStoreFolder(const AppContext& app) {
  return app.paths().resolve("/var/db");
}

}  // namespace

ArchViewController::ArchViewController(AppContext& app, QWidget* parent)
    : QWidget(parent), app_(app), ui_(std::make_unique<Ui::ArchWindow>()) {
  ui_->setupUi(this);
  ui_->progress->setVisible(false);
  ui_->stopButton->setVisible(false);
  connect(ui_->catalogueButton, &QPushButton::clicked, this, &ArchViewController::catalogueButton);
  connect(ui_->analyseButton, &QPushButton::clicked, this, &ArchViewController::theAnalyseButton);
  connect(ui_->copyButton, &QPushButton::clicked, this, &ArchViewController::copyButton);
  connect(ui_->saveButton, &QPushButton::clicked, this, &ArchViewController::theSaveButton);
  connect(ui_->biggerButton, &QToolButton::clicked, this, &ArchViewController::incFontSize);
  connect(ui_->smallerButton, &QToolButton::clicked, this, &ArchViewController::decFontSize);
  connect(ui_->stopButton, &QPushButton::clicked, this, &ArchViewController::stopTool);
  connect(ui_->debugCheckbox, &QCheckBox::toggled, this, [this](bool on) { debug_ = on; });
}

ArchViewController::~ArchViewController() {
  // The tool at work stops between two steps of its copy; its last words reach no one.
  worker_.request_stop();
  if (worker_.joinable()) worker_.join();
}

void ArchViewController::viewDidLoad() {
  theFontSize_ = reportFontSizeFromStore(app_.settings(), kArchFontSizeKey);
  restyleOutput();
}

void ArchViewController::viewDidAppear() {
  window()->setWindowTitle(qstring(kArchWindowTitle));
  ui_->debugCheckbox->setChecked(false);
  ui_->csvCheckbox->setChecked(false);
}

void ArchViewController::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  viewDidAppear();
}

void ArchViewController::replaceOutputText(std::string_view text) {
  outputText_.assign(text);
  ui_->outputText->setPlainText(qstring(text));
}

void ArchViewController::appendOutputText(std::string_view text) {
  outputText_.append(text);
  QScrollBar* bar = ui_->outputText->verticalScrollBar();
  const bool atEnd = bar->value() == bar->maximum();
  QTextCursor end(ui_->outputText->document());
  end.movePosition(QTextCursor::End);
  end.insertText(qstring(text));
  // A build's messages are followed while the reader stays at the end; a report is read from
  // its top.
  if (followOutput_ && atEnd) bar->setValue(bar->maximum());
}

void ArchViewController::restyleOutput() {
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  font.setPointSizeF(theFontSize_);
  font.setWeight(QFont::Normal);
  ui_->outputText->setFont(font);
}

bool ArchViewController::handlesMenuCommand(MenuCommand command) const {
  switch (command) {
    case MenuCommand::biggerFont:
    case MenuCommand::smallerFont:
    case MenuCommand::save:
    case MenuCommand::saveAs:
      return true;
    default:
      return false;
  }
}

void ArchViewController::performMenuCommand(MenuCommand command) {
  if (command == MenuCommand::biggerFont) incFontSize();
  if (command == MenuCommand::smallerFont) decFontSize();
  // The window's output is what Save writes while the window is in front.
  if (command == MenuCommand::save || command == MenuCommand::saveAs) theSaveButton();
}

void ArchViewController::incFontSize() {
  app_.reportSettings(stepReportFontSize(theFontSize_, app_.settings(), kArchFontSizeKey, 1),
                      window());
  restyleOutput();
}

void ArchViewController::decFontSize() {
  app_.reportSettings(stepReportFontSize(theFontSize_, app_.settings(), kArchFontSizeKey, -1),
                      window());
  restyleOutput();
}

std::optional<std::filesystem::path> ArchViewController::chooseLogarchive() {
  OpenPanelRequest request;
  request.title = "Choose a Logarchive";
  request.canChooseDirectories = true;
  request.treatsPackagesAsDirectories = true;
  request.allowedExtensions = {std::string(kLogarchiveExtension)};
  return app_.panels().runOpenPanel(request, window());
}

void ArchViewController::catalogueButton() {
  if (isRunning()) return;
  const auto archive = chooseLogarchive();
  if (!archive) return;
  runTool([archive = *archive](ArchiveOutput& output, std::stop_token stop) {
    runCatalogue(archive, output, stop);
  });
}

void ArchViewController::theAnalyseButton() {
  if (isRunning()) return;
  const auto archive = chooseLogarchive();
  if (!archive) return;
  const StatsForm form = ui_->csvCheckbox->isChecked() ? StatsForm::csv : StatsForm::text;
  runTool([archive = *archive, form](ArchiveOutput& output, std::stop_token stop) {
    runAnalysis(archive, form, output, stop);
  });
}

void ArchViewController::copyButton() {
  if (isRunning()) return;
  OpenPanelRequest source;
  source.title = "Choose the Log Store to Copy (the folder of uuidtext and diagnostics)";
  source.canChooseDirectories = true;
  source.canChooseFiles = false;
  source.showsHiddenFiles = true;
  source.directory = logStoreFolder(app_);
  const auto from = app_.panels().runOpenPanel(source, window());
  if (!from) return;
  replaceOutputText(std::string(kSourceLine) + from->string() + "\n");

  const SavePanelRequest destination{
      "Make Logarchive", "", {{"com.apple.logarchive", "Log archive", "logarchive"}}, true};
  const auto to = app_.panels().runSavePanel(destination, window());
  if (!to) return;
  const bool modern = app_.osVersion() >= 15;
  followOutput_ = true;
  QPointer<ArchViewController> self(this);
  MainThread& main = app_.mainThread();
  runTool([this, self, &main, from = *from, to = to->path, modern](ArchiveOutput& output,
                                                                   std::stop_token stop) {
    BuildOptions options;
    options.debug = [this] { return debug_.load(); };  // the window outlives its worker
    options.stop = stop;
    options.progress = [self, &main, shown = -1](uint64_t done, uint64_t total) mutable {
      const int permille = total == 0 ? 1000 : static_cast<int>(done * 1000 / total);
      if (permille == shown) return;
      shown = permille;
      main.post([self, done, total] {
        if (self) self->showProgress(done, total);
      });
    };
    (void)runBuild(from, to, modern, output, std::move(options));
  });
}

void ArchViewController::theSaveButton() {
  const std::string text = outputText_;
  const SavePanelRequest request{
      "Save Output",
      "",
      {{"public.plain-text", "Text", "txt"}, {"public.plain-text", "Text", "text"}},
      true};
  const auto choice = app_.panels().runSavePanel(request, window());
  if (!choice) return;
  if (Status written = writeFileInPlace(choice->path, text); !written)
    appendOutputText(written.error().message());
}

void ArchViewController::stopTool() {
  worker_.request_stop();
}

void ArchViewController::runTool(Work work) {
  setToolsEnabled(false);
  ui_->progress->setRange(0, 0);  // busy until a tool tells how far it is
  ui_->progress->setVisible(true);
  ui_->stopButton->setVisible(true);
  QPointer<ArchViewController> self(this);
  MainThread& main = app_.mainThread();
  worker_ = std::jthread([work = std::move(work), self, &main](std::stop_token stop) {
    PostedOutput output(main, self);
    work(output, stop);
    main.post([self] {
      if (self) self->finishTool();
    });
  });
}

void ArchViewController::finishTool() {
  if (worker_.joinable()) worker_.join();  // it has nothing left to do but return
  followOutput_ = false;
  ui_->progress->setVisible(false);
  ui_->stopButton->setVisible(false);
  setToolsEnabled(true);
  emit toolFinished();
}

void ArchViewController::showProgress(uint64_t done, uint64_t total) {
  // The bar counts in permille: a store's bytes overflow its int.
  ui_->progress->setRange(0, 1000);
  ui_->progress->setValue(total == 0 ? 1000 : static_cast<int>(done * 1000 / total));
  ui_->progress->setFormat(QString("%1 of %2 MB copied")
                               .arg(static_cast<double>(done) / 1e6, 0, 'f', 0)
                               .arg(static_cast<double>(total) / 1e6, 0, 'f', 0));
}

void ArchViewController::setToolsEnabled(bool enabled) {
  for (QWidget* tool :
       {static_cast<QWidget*>(ui_->catalogueButton), static_cast<QWidget*>(ui_->analyseButton),
        static_cast<QWidget*>(ui_->copyButton)})
    tool->setEnabled(enabled);
}

}  // namespace kavor::app
