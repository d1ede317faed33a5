#pragma once
// The application delegate: the launch sequence, the commands that open the auxiliary windows and
// the project's web pages, and the switch that turns the chart view off.

#include <QObject>
#include <functional>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

class QUrl;

namespace kavor::app {

class AppContext;
class WindowController;
using WindowControllers = std::vector<std::unique_ptr<WindowController>>;

class AppDelegate final : public QObject {
  Q_OBJECT

 public:
  explicit AppDelegate(AppContext& app);
  ~AppDelegate() override;

  // Every window of a kind opened so far; a closed window's controller stays.
  WindowControllers myArchWindow;
  WindowControllers myCheckLogWindow;
  WindowControllers myField;
  WindowControllers myHelpWindow;
  WindowControllers myPrefsWindow;

  // Read from the settings at launch; a fetch collects chart data only while it is false.
  bool dontShowGraphView = false;

  // Runs the start-up checks, each failure told in an alert; then reads "dontShowGraphView",
  // hides "Open Chart" and shows "Logarchive Tool". False when the application must end: the
  // user is no administrator.
  [[nodiscard]] bool applicationDidFinishLaunching();
  // Flips the switch, stores it, and ticks "Enable Chart View" while the chart view is on.
  void enableGraphView();
  // A further Logarchive Tool window, whatever is open already.
  void openArchWindow();
  // A further Log Check window.
  void openCheckLog();
  // A further Log Fields window.
  void openField();
  // A further Preferences window.
  void openPrefs();
  // A further help window with the manual.
  void openHelp();
  // The project's support page, in the default browser.
  void openSupport();
  // The project's releases page, in the default browser.
  void openUpdates();
  // Hands the address to the default browser; nothing comes back.
  void openWebPage(std::string_view address);
  // Where openWebPage sends its address: the desktop's browser, unless a test says otherwise.
  using WebPageOpener = std::function<void(const QUrl&)>;
  void setWebPageOpener(WebPageOpener opener) { webPageOpener_ = std::move(opener); }
  // Closes every window the delegate opened, as quitting does: each stores what it must.
  void closeWindows();

  // Makes the window controller of the identifier, shows its window and keeps the controller.
  WindowController* openWindowController(std::string_view identifier, WindowControllers& list);

 private:
  AppContext& app_;
  WebPageOpener webPageOpener_;
};

}  // namespace kavor::app
