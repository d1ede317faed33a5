#include "app/archive/arch_view_controller.h"

#include <QProgressBar>
#include <utility>

#include "app/shell/app_context.h"
#include "app/shell/background_work.h"
#include "app/shell/file_panels.h"
#include "app/shell/qt_text.h"
#include "app/shell/report_area.h"
#include "engine/archive/archive_output.h"
#include "engine/archive/archive_texts.h"
#include "engine/archive/log_store_catalogue.h"
#include "engine/archive/logarchive_builder.h"
#include "engine/archive/statistics_analysis.h"
#include "platform/file_bytes.h"
#include "ui_arch_window.h"

namespace kavor::app {

namespace {

// The output of a tool at work: each piece reaches the window through the main thread, after
// the pieces before it.
class PostedOutput final : public ArchiveOutput {
 public:
  PostedOutput(BackgroundWork& work, ReportArea& area) : work_(work), area_(area) {}

  void replaceOutputText(std::string_view text) override {
    work_.post([&area = area_, text = std::string(text)] { area.replaceOutputText(text); });
  }
  void appendOutputText(std::string_view text) override {
    work_.post([&area = area_, text = std::string(text)] { area.appendOutputText(text); });
  }

 private:
  BackgroundWork& work_;
  ReportArea& area_;
};

// Where a log store is found on this system: its var/db under the system root.
std::filesystem::path logStoreFolder(const AppContext& app) {
  return app.paths().resolve("/var/db");
}

}  // namespace

ArchViewController::ArchViewController(AppContext& app, QWidget* parent)
    : QWidget(parent),
      app_(app),
      ui_(std::make_unique<Ui::ArchWindow>()),
      work_(std::make_unique<BackgroundWork>(app.mainThread())) {
  ui_->setupUi(this);
  output_ = std::make_unique<ReportArea>(app, *ui_->outputText, kArchFontSizeKey,
                                         ReportArea::Face::monospaced);
  ui_->progress->setVisible(false);
  ui_->stopButton->setVisible(false);
  connect(ui_->catalogueButton, &QPushButton::clicked, this, &ArchViewController::catalogueButton);
  connect(ui_->analyseButton, &QPushButton::clicked, this, &ArchViewController::theAnalyseButton);
  connect(ui_->copyButton, &QPushButton::clicked, this, &ArchViewController::copyButton);
  connect(ui_->saveButton, &QPushButton::clicked, this, &ArchViewController::theSaveButton);
  connect(ui_->biggerButton, &QToolButton::clicked, this, &ArchViewController::incFontSize);
  connect(ui_->smallerButton, &QToolButton::clicked, this, &ArchViewController::decFontSize);
  connect(ui_->stopButton, &QPushButton::clicked, this, &ArchViewController::stopWork);
  connect(ui_->debugCheckbox, &QCheckBox::toggled, this, [this](bool on) { debug_ = on; });
  connect(work_.get(), &BackgroundWork::finished, this, &ArchViewController::finishTool);
}

ArchViewController::~ArchViewController() = default;

void ArchViewController::viewDidLoad() {
  output_->load();
}

double ArchViewController::theFontSize() const {
  return output_->theFontSize();
}

const std::string& ArchViewController::outputText() const {
  return output_->text();
}

bool ArchViewController::isRunning() const {
  return work_->isRunning();
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
  output_->incFontSize();
}

void ArchViewController::decFontSize() {
  output_->decFontSize();
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
  output_->replaceOutputText(std::string(kSourceLine) + from->string() + "\n");

  const SavePanelRequest destination{
      "Make Logarchive", "", {{"com.apple.logarchive", "Log archive", "logarchive"}}, true};
  const auto to = app_.panels().runSavePanel(destination, window());
  if (!to) return;
  const bool modern = app_.osVersion() >= 15;
  output_->setFollowing(true);
  BackgroundWork& work = *work_;
  runTool([this, &work, from = *from, to = to->path, modern](ArchiveOutput& output,
                                                             std::stop_token stop) {
    BuildOptions options;
    options.debug = [this] { return debug_.load(); };  // the window outlives its tool
    options.stop = stop;
    options.progress = [this, &work, shown = -1](uint64_t done, uint64_t total) mutable {
      const int permille = total == 0 ? 1000 : static_cast<int>(done * 1000 / total);
      if (permille == shown) return;
      shown = permille;
      work.post([this, done, total] { showProgress(done, total); });
    };
    (void)runBuild(from, to, modern, output, std::move(options));
  });
}

void ArchViewController::theSaveButton() {
  const std::string text = output_->text();
  const SavePanelRequest request{
      "Save Output",
      "",
      {{"public.plain-text", "Text", "txt"}, {"public.plain-text", "Text", "text"}},
      true};
  const auto choice = app_.panels().runSavePanel(request, window());
  if (!choice) return;
  if (Status written = writeFileInPlace(choice->path, text); !written)
    output_->appendOutputText(written.error().message());
}

void ArchViewController::stopWork() {
  work_->stop();
}

void ArchViewController::runTool(Tool tool) {
  setToolsEnabled(false);
  ui_->progress->setRange(0, 0);  // busy until a tool tells how far it is
  ui_->progress->setVisible(true);
  ui_->stopButton->setVisible(true);
  work_->start([this, tool = std::move(tool)](std::stop_token stop) {
    PostedOutput output(*work_, *output_);
    tool(output, stop);
  });
}

void ArchViewController::finishTool() {
  output_->setFollowing(false);
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
