#pragma once
// Makes, finds and forgets documents: New makes one with its main window, Open refuses, Open JSON
// Log makes one from a saved log, and the document of the window in front receives the document
// and main window commands.

#include <QObject>
#include <QPointer>
#include <filesystem>
#include <memory>
#include <stop_token>
#include <vector>

namespace kavor {
class OperationQueue;
struct OpenedLogFile;
}  // namespace kavor

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
  // File > Open JSON Log…: asks for a saved JSON log and opens it.
  void chooseJsonLog();
  // Reads a saved JSON log off the main thread into a new document window named after it; a
  // file that does not decode gets an alert with the reason, and no window.
  void openJsonLog(const std::filesystem::path& path);
  // At launch: the files named on the command line, else a new document. When none of them
  // opens, a new document all the same, so that the application has a window.
  void openAtLaunch(const std::vector<std::filesystem::path>& files);
  // Files being read.
  size_t opensInFlight() const { return opensInFlight_; }
  const std::vector<std::unique_ptr<AppDocument>>& documents() const { return documents_; }

  // The document of the active window, else of the window last active, else the newest.
  AppDocument* frontDocument() const;
  ViewController* frontViewController() const;

  // Closes every document's windows (at quit).
  void closeAll();

 signals:
  // An open of a saved JSON log ended, with a new window or an alert.
  void jsonLogOpenEnded();

 private:
  void documentClosed(AppDocument* document);
  void finishJsonLog(OpenedLogFile&& opened);

  AppContext& app_;
  std::vector<std::unique_ptr<AppDocument>> documents_;
  // Closed, waiting for their deferred deletion; deleted with the controller when still here.
  std::vector<QPointer<AppDocument>> closed_;
  QPointer<AppDocument> lastActive_;
  // Where saved logs are read, made with the first; it waits for its reads when it goes, which
  // stop at once.
  std::unique_ptr<OperationQueue> openQueue_;
  std::stop_source stopOpens_;
  size_t opensInFlight_ = 0;
  bool windowIfNoneOpens_ = false;
};

}  // namespace kavor::app
