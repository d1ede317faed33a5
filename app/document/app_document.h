#pragma once
// The document machinery's side of one Document: its window controllers, the bytes it saves,
// and its refusal to open files. The main window's controller is always the first window
// controller; closing the main window closes the document with all its windows.

#include <QObject>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/document/document.h"
#include "platform/expected.h"

namespace kavor::app {

class AppContext;
class ViewController;
class WindowController;

class AppDocument final : public QObject {
  Q_OBJECT

 public:
  explicit AppDocument(AppContext& app);
  ~AppDocument() override;

  Document& record() { return record_; }
  const Document& record() const { return record_; }

  // Makes the main window's controller from "Document Window Controller" and hides "Open Chart"
  // until this document's chart data is ready.
  void makeWindowControllers();
  void addWindowController(std::unique_ptr<WindowController> controller);
  const std::vector<std::unique_ptr<WindowController>>& windowControllers() const {
    return controllers_;
  }
  // The content of the first window controller when it is a main window's, else none.
  ViewController* viewController() const;
  void showWindows();

  // The name set after a fetch; before that the saved file's name, or "Untitled".
  std::string displayName() const;

  // The bytes of a save in the given type: the result view's text and the trailer. A styled save
  // appends the trailer to the view first. CSV is the converted text alone. Fails with the document
  // error when there is no main window controller or the conversion gives nothing.
  Expected<std::string> dataOfType(std::string_view typeName);
  // Saved files are output only: reading always fails with the document error.
  static Status readFromData(std::string_view data, std::string_view typeName);

  // Save: to the file of the last save in its type, else as Save As. The window's status then
  // says where the file went.
  void saveDocument();
  // Save As: the panel proposes the display name with plain text or RTF, and CSV while the view
  // shows the CSV text.
  void saveDocumentAs();
  // Closes every window of the document, then the document.
  void close();

  // Windows > Open Chart: a further chart window of this document, closed with it.
  void openGraphView();
  // After a fetch: the entries are read on the document's queue, then indexed and binned on the
  // main thread, and "Open Chart" is shown.
  void computeChartData();

 signals:
  void closed(kavor::app::AppDocument* document);
  void activated(kavor::app::AppDocument* document);
  void chartDataReady();

 private:
  void windowWillClose(WindowController* controller);
  bool saveTo(const std::filesystem::path& path, const std::string& typeName);

  AppContext& app_;
  Document record_;
  std::vector<std::unique_ptr<WindowController>> controllers_;
  std::optional<std::filesystem::path> fileUrl_;
  std::string fileType_;
  bool closing_ = false;
};

}  // namespace kavor::app
