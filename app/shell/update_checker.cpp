#include "app/shell/update_checker.h"

#include <QAction>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QUrl>

#include "app/shell/alerts.h"
#include "app/shell/app_context.h"
#include "app/shell/app_delegate.h"
#include "app/shell/main_menu.h"
#include "app/shell/qt_text.h"
#include "engine/shell/update_feed.h"
#include "engine/shell/update_schedule.h"
#include "engine/shell/update_texts.h"
#include "engine/version.h"

namespace kavor::app {

namespace {

// A server that stalls or sends without end is given up on; the feed is a few hundred bytes.
constexpr int kTransferTimeoutMs = 30000;

}  // namespace

UpdateChecker::UpdateChecker(AppContext& app, std::string runningVersion, QObject* parent)
    : QObject(parent),
      app_(app),
      runningVersion_(std::move(runningVersion)),
      network_(new QNetworkAccessManager(this)) {}

UpdateChecker::~UpdateChecker() = default;

void UpdateChecker::runSchedule() {
  const Status written =
      runUpdateSchedule(app_.settings(), app_.clock(), [this] { checkForUpdate(); });
  app_.reportSettings(written, nullptr);
}

void UpdateChecker::checkForUpdate() {
  if (runningVersion_.empty()) {
    showErrorAlert(app_.alerts(), kNoVersionAlert, nullptr);
    return;
  }
  QNetworkRequest request(QUrl(qstring(updateFeedAddress(app_.settings()))));
  request.setTransferTimeout(kTransferTimeoutMs);
  QNetworkReply* reply = network_->get(request);
  connect(reply, &QNetworkReply::downloadProgress, reply, [reply](qint64 received, qint64) {
    if (received > static_cast<qint64>(kMaxUpdateFeedBytes)) reply->abort();
  });
  connect(reply, &QNetworkReply::finished, this, [this, reply] { answerArrived(reply); });
}

void UpdateChecker::answerArrived(QNetworkReply* reply) {
  reply->deleteLater();
  // No status means the answer was not HTTP.
  const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
  const QByteArray data = reply->readAll();
  if (reply->error() == QNetworkReply::NoError && status.isValid() &&
      updateAnswerUsable(status.toInt(), reply->rawHeader("Content-Type").toStdString(),
                         static_cast<size_t>(data.size())))
    handleUpdateFeed(std::string_view(data.constData(), static_cast<size_t>(data.size())));
  emit answered();
}

void UpdateChecker::handleUpdateFeed(std::string_view data) {
  const UpdateFeedResult feed = readUpdateFeed(data, runningVersion_);
  if (feed.alert) {
    showErrorAlert(app_.alerts(), *feed.alert, nullptr);
    return;
  }
  if (feed.listsKavor) {
    QAction* item = app_.menu().action(MenuCommand::updateStatus);
    item->setCheckable(true);
    item->setChecked(true);
    item->setText(qstring(kCheckedForUpdateItem));
  }
  for (const UpdateOffer& offer : feed.offers) {
    const Alert alert{Alert::Style::informational,
                      updateOfferMessage(offer),
                      updateOfferInformative(runningVersion_),
                      {std::string(kOfferIgnoreButton), std::string(kOfferDownloadButton)}};
    if (app_.alerts().runModal(alert, nullptr) != kOfferDownloadChoice) continue;
    // An address that Qt cannot make sense of is nothing to open.
    const QUrl url(qstring(offer.url), QUrl::StrictMode);
    if (url.isValid()) app_.delegate().openWebPage(offer.url);
  }
}

void scheduleUpdateCheck(AppContext& app, QObject* owner) {
  auto* checker = new UpdateChecker(app, std::string(kKavorVersion), owner);
  checker->runSchedule();
}

}  // namespace kavor::app
