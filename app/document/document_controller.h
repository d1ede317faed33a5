#pragma once
// Makes, finds and forgets documents: New makes one with its main window, Open refuses, and the
// document of the window in front receives the document and main window commands.

#include <QObject>
#include <QPointer>
#include <memory>
#include <vector>

namespace kavor::app {

class AppContext;
class AppDocument;
class ViewController;

class DocumentController final : public QObject {
  Q_OBJECT

 public:
  explicit DocumentController(AppContext& app);
  ~DocumentController() override;

  // A new document with its main window, shown in front.
  AppDocument* newDocument();
  // Asks for a file, then reports that it cannot be opened; no document is made.
  void openDocument();
  const std::vector<std::unique_ptr<AppDocument>>& documents() const { return documents_; }

  // The document of the active window, else of the window last active, else the newest.
  AppDocument* frontDocument() const;
  ViewController* frontViewController() const;

  // Closes every document's windows (at quit).
  void closeAll();

 private:
  void documentClosed(AppDocument* document);

  AppContext& app_;
  std::vector<std::unique_ptr<AppDocument>> documents_;
  // Closed, waiting for their deferred deletion; deleted with the controller when still here.
  std::vector<QPointer<AppDocument>> closed_;
  QPointer<AppDocument> lastActive_;
};

}  // namespace kavor::app
