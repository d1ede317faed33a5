#pragma once
// The content controller of every main window: the query form, the run of the log tool, the
// styled result, the View menu switches, font size, base-date paste and the privileged log
// collection. It gathers its controls into engine inputs and shows what the engine returns.

#include <QMenu>
#include <QPointer>
#include <QWidget>
#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "engine/core/date_format.h"
#include "engine/document/shown_result.h"
#include "engine/document/text_search.h"
#include "engine/query/entry_styler.h"
#include "engine/query/log_fetch.h"
#include "engine/query/log_file.h"
#include "engine/query/log_query.h"
#include "engine/query/log_runner.h"
#include "engine/query/main_settings.h"
#include "platform/notification_center.h"

class QComboBox;
class QTimer;

namespace Ui {
class DocumentWindow;
}

namespace kavor::app {

class AppContext;
class AppDocument;
class EntryTableModel;
class FindBar;
class ResultView;

class ViewController final : public QWidget {
  Q_OBJECT

 public:
  // Every property takes its initial value here; the settings are read by viewDidLoad.
  explicit ViewController(AppContext& app, QWidget* parent = nullptr);
  ~ViewController() override;

  // Reads the system version, font size, lists and switches (a factory reset first when no style
  // list is stored), fills the form, and starts observing "Customs-Changed".
  void viewDidLoad();
  // Each time the window appears: title "Kavor", the View menu, the count labels, the period.
  void viewDidAppear();

  // The document of the window's window controller, or none.
  AppDocument* document() const;

  const MainSettings& settings() const { return settings_; }
  const std::vector<std::string>& theCommandStr1() const { return theCommandStr1_; }
  const std::vector<std::string>& theFullCmdStr() const { return theFullCmdStr_; }
  const std::string& theNowStr() const { return theNowStr_; }
  const LogSource& source() const { return source_; }
  QMenu* myViewMenu() const { return myViewMenu_; }
  ResultView& resultView() const;
  // What the window shows: its document's, or nothing for a window without one.
  ShownResult& shown();
  Ui::DocumentWindow& ui() const { return *ui_; }
  // Runs started and not yet completed.
  size_t runsInFlight() const { return fetch_ ? fetch_->runsInFlight() : 0; }
  // Ends the runs of the log tool still going; their results are never shown.
  void cancelRuns();
  // A saved JSON log, read for this window's new document, shown as a fetch's result.
  void showOpenedLog(OpenedLogFile&& opened);
  // A restyle runs off the main thread and its result is not shown yet.
  bool restyling() const { return restyling_; }
  bool tableMode() const { return tableMode_; }
  EntryTableModel& tableModel() const { return *tableModel_; }
  // The detail pane shows the entry of a shown entry's position, or of a byte of the text.
  void showEntryDetail(size_t shownIndex);
  void showDetailAt(size_t textOffset);
  FindBar& findBar() const;
  // A search is due or runs off the main thread, and its matches are not shown yet.
  bool finding() const { return finding_; }
  // The time a restyle's filter may spend matching; tests hand in one on their own clock.
  void setFilterBudget(FilterBudget budget) { filterBudget_ = std::move(budget); }

 public slots:
  void setLimit();
  void setShowLogEntries();
  void setShowSignposts();
  void setShowActivities();
  void setFetchInfo();
  void setFetchSignposts();
  void setFetchDebug();
  void incFontSize();
  void decFontSize();
  // The base date from the clipboard's pasteboard form; anything else is ignored.
  void paste();
  void cmdMakeLog();
  void doSaveDefaults();
  void doConversion();
  // Shows the results as a table with a column per style item, or as text again.
  void setTableMode();
  // The three lists to a property-list file, and back from one (replacing or merging).
  void exportPrefs();
  void importPrefs();
  void stepSetPeriod();
  void textSetPeriod();
  void setTheNowButton();
  void setLogarchiveSource();
  void getLogButton();
  void setStyleCombo();
  void setFilterCombo();
  // Edit > Find: the find bar with its text focused. Find Next and Previous step through the
  // matches, round from the last to the first; with the bar closed they open it.
  void showFind();
  void findNext();
  void findPrevious();
  // Closes the bar and takes the marks away.
  void closeFind();

  void refreshViewMenu();
  void refreshResults();
  void loadCusMenu();

 signals:
  // A run of the log tool completed and its results, or its alert, were shown.
  void logShowCompleted();

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  struct Run;
  void connectControls();
  void connectResultViews();
  // The table holds the shown result only while it is on screen: its row header costs memory
  // per row, kept after the rows are gone.
  void fillTable();
  // Lets go of the shown result; a header that held rows is replaced.
  void emptyTable();
  void resetRowHeader();
  void connectComboBox(QComboBox* box, ComboBoxModel& model, void (ViewController::*action)());
  void showComboBoxes();
  void showComboBox(QComboBox* box, const ComboBoxModel& model);
  void flip(bool& setting, bool restyle);
  void applyFontSize();
  void startSpinner();
  void stopSpinner();
  void showActionError(const std::string& text);
  // The style text is kept in styleText, which must outlive the input.
  StylerInput stylerInput(std::string& styleText) const;
  // The current choices and entries, held by value for a restyle.
  StyleRequest styleRequest() const;
  // Styles and shows the result: at once when that is quick, else on the processing queue with
  // the spinner showing until the result is shown. Replaces any restyle still running.
  void restyle(StyleRequest request);
  // Ends the restyle still running, if any, so that its result is never shown; returns the
  // generation of whatever is shown next.
  uint64_t supersedeRestyles();
  // A result styled elsewhere (a fetch's completion), shown in place of any running restyle's.
  void showStyled(StyledEntries styled);
  void applyStyled(StyledEntries styled);
  // Puts a result in the document, in place of what it showed, and shows it with its counts.
  void applyShown(ShownResult result, const StyledEntries& counts);
  void showNotice(const std::optional<std::string>& notice);
  void setUpNotices();
  // The entry limit's notice above the result, or none.
  void showLimitNotice(const std::optional<std::string>& notice);
  void showLineCount();
  // In table mode: each column as wide as its widest cell on screen, to a bound.
  void fitTableColumns();
  // Once the event in hand is done, gives the memory freed by a replaced result (its entries,
  // text, view and chart data, wherever their threads freed them) back to the system.
  void releaseReplacedMemory();
  void completeLogShow(LogShowOutput&& output, const std::shared_ptr<const Run>& run);
  void setUpFind();
  // Searches the shown text for what the find bar asks: at once when the text is small, else
  // on the processing queue; a search still running is stopped and its matches dropped.
  void runFind();
  // The shown text changed: the open search runs again once the event in hand is done.
  void findAgainLater();
  void showFound(Expected<TextMatches> found);
  void stepFind(bool forward);
  // The current match selected, scrolled to, and counted.
  void showCurrentMatch();
  // What a fetch's or an opened file's completion says to show.
  void showCompletion(LogShowCompletion& done, AppDocument& owner);

  AppContext& app_;
  std::unique_ptr<Ui::DocumentWindow> ui_;
  MainSettings settings_;
  std::vector<std::string> theCommandStr1_{"show"};
  std::vector<std::string> theFullCmdStr_{""};
  LogSource source_;
  std::string theNowStr_;
  QPointer<QMenu> myViewMenu_;
  NotificationCenter::Observation customsChanged_;
  bool showingBoxes_ = false;
  // Made with the first Get Log, on the document's queue; it cancels its runs when it goes.
  std::unique_ptr<LogFetch> fetch_;
  FilterBudget filterBudget_;
  // Counts restyles, fetch results and conversions shown, so that a restyle finishing after a
  // newer one began drops its result.
  uint64_t restyleGeneration_ = 0;
  std::stop_source restyleStop_;
  bool restyling_ = false;
  QTimer* releaseTimer_ = nullptr;
  ShownResult noResult_;  // shown by a window without a document
  EntryTableModel* tableModel_ = nullptr;
  bool tableMode_ = false;
  // Find: the matches live in the result view as its marks. A search's generation drops the
  // matches of one superseded before they arrived. A search off the main thread holds the shown
  // text with it, so a result replaced or a trailer appended meanwhile leaves it whole.
  uint64_t findGeneration_ = 0;
  std::stop_source findStop_;
  bool finding_ = false;
  bool findAgainQueued_ = false;
  MatchCount foundCount_;
};

}  // namespace kavor::app
