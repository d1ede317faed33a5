#include "app/shell/file_panels.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QStringList>

namespace kavor::app {

namespace {

QString nameFilter(const std::string& description, const std::vector<std::string>& extensions) {
  QStringList patterns;
  for (const auto& extension : extensions)
    patterns << "*." + QString::fromStdString(extension);
  return QString::fromStdString(description) + " (" + patterns.join(' ') + ")";
}

// A file dialog that also accepts a folder with one of the allowed extensions (a logarchive)
// instead of entering it.
class BundleFileDialog final : public QFileDialog {
 public:
  BundleFileDialog(QWidget* parent, const OpenPanelRequest& request)
      : QFileDialog(parent, QString::fromStdString(request.title)), request_(request) {}

  void accept() override {
    const QStringList files = selectedFiles();
    if (request_.canChooseDirectories && files.size() == 1 && QFileInfo(files[0]).isDir() &&
        hasAllowedExtension(files[0])) {
      chosen_ = files[0];
      QDialog::accept();
      return;
    }
    QFileDialog::accept();
  }

  QString chosen() const { return chosen_.isEmpty() ? selectedFiles().value(0) : chosen_; }

 private:
  bool hasAllowedExtension(const QString& path) const {
    if (request_.allowedExtensions.empty()) return true;
    const QString suffix = QFileInfo(path).suffix();
    for (const auto& extension : request_.allowedExtensions)
      if (suffix == QString::fromStdString(extension)) return true;
    return false;
  }

  const OpenPanelRequest& request_;
  QString chosen_;
};

}  // namespace

FilePanels::~FilePanels() = default;

std::optional<std::filesystem::path> DialogFilePanels::runOpenPanel(const OpenPanelRequest& request,
                                                                    QWidget* parent) {
  BundleFileDialog dialog(parent, request);
  dialog.setOption(QFileDialog::DontUseNativeDialog, request.canChooseDirectories);
  dialog.setFileMode(request.canChooseFiles ? QFileDialog::ExistingFile : QFileDialog::Directory);
  dialog.setOption(QFileDialog::ShowDirsOnly, !request.canChooseFiles);
  dialog.setAcceptMode(QFileDialog::AcceptOpen);
  if (!request.directory.empty()) dialog.setDirectory(QString::fromStdString(request.directory));
  if (request.showsHiddenFiles) dialog.setFilter(dialog.filter() | QDir::Hidden);
  if (!request.allowedExtensions.empty())
    dialog.setNameFilter(nameFilter("Log archives and files", request.allowedExtensions));
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  const QString chosen = dialog.chosen();
  if (chosen.isEmpty()) return std::nullopt;
  return std::filesystem::path(chosen.toStdString());
}

std::optional<SaveChoice> DialogFilePanels::runSavePanel(const SavePanelRequest& request,
                                                         QWidget* parent) {
  QFileDialog dialog(parent, QString::fromStdString(request.title));
  // The dialog's own "replace?" question must see the name with the extension that the save
  // adds; a platform dialog would ask about the name as typed.
  dialog.setOption(QFileDialog::DontUseNativeDialog);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setFileMode(QFileDialog::AnyFile);
  dialog.setOption(QFileDialog::ReadOnly, !request.canCreateDirectories);
  QStringList filters;
  for (const auto& type : request.types)
    filters << nameFilter(type.description, {type.extension});
  dialog.setNameFilters(filters);
  const auto typeOf = [&](const QString& filter) {
    return static_cast<size_t>(filters.indexOf(filter));
  };
  const auto suffixFor = [&](const QString& filter) {
    const size_t index = typeOf(filter);
    if (index < request.types.size())
      dialog.setDefaultSuffix(QString::fromStdString(request.types[index].extension));
  };
  QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, suffixFor);
  if (!filters.isEmpty()) suffixFor(filters.front());
  dialog.selectFile(QString::fromStdString(request.proposedName));
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
  const QString chosen = dialog.selectedFiles().front();
  size_t index = typeOf(dialog.selectedNameFilter());
  // A name typed with another offered type's extension ("log.csv") is saved in that type.
  const QString suffix = QFileInfo(chosen).suffix();
  for (size_t i = 0; i < request.types.size(); ++i)
    if (suffix.compare(QString::fromStdString(request.types[i].extension), Qt::CaseInsensitive) ==
        0)
      index = i;
  if (index >= request.types.size()) return std::nullopt;
  return SaveChoice{chosen.toStdString(), request.types[index].typeName};
}

}  // namespace kavor::app
