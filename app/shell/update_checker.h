#pragma once
// The update check of the launch: the schedule, the feed's download (Qt's network stack does the
// transfer on its own thread; the answer comes back to the main thread as a signal), and what
// the feed offers, shown on the main thread. The launch never waits for the answer.

#include <QObject>
#include <string>
#include <string_view>

class QNetworkAccessManager;
class QNetworkReply;

namespace kavor::app {

class AppContext;

class UpdateChecker final : public QObject {
  Q_OBJECT

 public:
  UpdateChecker(AppContext& app, std::string runningVersion, QObject* parent = nullptr);
  ~UpdateChecker() override;

  // Starts a check when one is due and writes the schedule's keys back; returns at once.
  void runSchedule();
  // Starts the feed's download; returns at once.
  void checkForUpdate();
  // A feed that arrived: marks the Help menu's update item and offers each update in turn.
  void handleUpdateFeed(std::string_view data);

 signals:
  // A download's answer was read, or dropped as unusable.
  void answered();

 private:
  void answerArrived(QNetworkReply* reply);

  AppContext& app_;
  std::string runningVersion_;
  QNetworkAccessManager* network_;
};

// The launch's update step: a checker for Kavor's own version, owned by owner, runs the schedule.
void scheduleUpdateCheck(AppContext& app, QObject* owner);

}  // namespace kavor::app
