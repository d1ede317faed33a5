#pragma once
// The help window's controller: Kavor's manual, a PDF among the application's resources, in a PDF
// view that fits the pages to the window's width. The file is read anew each time the window
// appears; without a readable file the view stays empty.

#include <QWidget>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>

class QPdfDocument;
class QPdfView;

namespace Ui {
class HelpWindow;
}

namespace kavor::app {

class AppContext;

class HelpViewController final : public QWidget {
  Q_OBJECT

 public:
  explicit HelpViewController(AppContext& app, QWidget* parent = nullptr);
  ~HelpViewController() override;

  // Each time the window appears: the manual read again from its file.
  void viewDidAppear();

  // The loaded manual, or none.
  QPdfDocument* thePDFDocument() const { return thePDFDocument_.get(); }
  QPdfView* helpPDFView() const;

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  AppContext& app_;
  std::unique_ptr<Ui::HelpWindow> ui_;
  std::unique_ptr<QPdfDocument> thePDFDocument_;
};

// The file of a resource of this name and extension in the folder, when there is one.
std::optional<std::filesystem::path> urlForResource(const std::filesystem::path& folder,
                                                    std::string_view name,
                                                    std::string_view extension);

}  // namespace kavor::app
