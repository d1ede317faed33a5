// The update check at launch against an HTTP server of the test's own on 127.0.0.1: what a good
// feed changes, and that an answer that is not one changes nothing.

#include <QAction>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include "app/shell/app_delegate.h"
#include "app/shell/main_menu.h"
#include "app/shell/update_checker.h"
#include "engine/shell/update_texts.h"
#include "engine/version.h"
#include "platform/plist_value.h"
#include "tests/app/app_fixture.h"
#include "tests/app/app_test_registry.h"

using namespace kavor;
using namespace kavor::app;
using namespace kavor::app_testing;

namespace {

// Answers every request with one canned HTTP response, then closes the connection.
class FeedServer final : public QObject {
 public:
  FeedServer(int status, std::string_view contentType, const std::string& body) {
    response_ = QByteArray("HTTP/1.1 ") + QByteArray::number(status) + " Answer\r\nContent-Type: " +
                QByteArray(contentType.data(), static_cast<qsizetype>(contentType.size())) +
                "\r\nContent-Length: " + QByteArray::number(static_cast<qsizetype>(body.size())) +
                "\r\nConnection: close\r\n\r\n" + QByteArray::fromStdString(body);
    if (!server_.listen(QHostAddress::LocalHost, 0)) qFatal("no local test server");
    connect(&server_, &QTcpServer::newConnection, this, [this] {
      while (QTcpSocket* socket = server_.nextPendingConnection()) {
        connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
          request_ += socket->readAll();
          if (!request_.contains("\r\n\r\n")) return;
          ++requests;
          socket->write(response_);
          socket->disconnectFromHost();
        });
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
      }
    });
  }
  std::string address() const {
    return "http://127.0.0.1:" + std::to_string(server_.serverPort()) + "/updates.plist";
  }
  int requests = 0;

 private:
  QTcpServer server_;
  QByteArray response_;
  QByteArray request_;
};

const std::string kSite(kDownloadAddressPrefix);
constexpr std::string_view kNewerVersion = "99.0.0";

std::string kavorFeed() {
  const auto entry = [](std::string_view app, std::string_view version) {
    return PlistValue(PlistDict{{"AppName", app}, {"Version", version}, {"URL", kSite + "k.zip"}});
  };
  return writeXmlPlist(arrayValue({entry("Other", "1.0"), entry("Kavor", kNewerVersion)}));
}

QAction* updateItem(TestApp& app) {
  return app.context().menu().action(MenuCommand::updateStatus);
}

// Launches with the check due and pointed at server; whether its answer came back.
bool launchAgainst(TestApp& app, const FeedServer& server) {
  if (!app.settings.setBool(kNoUpdateCheckKey, false) ||
      !app.settings.setString(kUpdateFeedAddressKey, server.address()))
    return false;
  if (!app.context().delegate().applicationDidFinishLaunching()) return false;
  auto* checker = app.context().delegate().findChild<UpdateChecker*>();
  if (!checker) return false;
  QSignalSpy answered(checker, &UpdateChecker::answered);
  return answered.wait(20000) && app.settings.doubleValue(kDateLastUpdateCheckKey) == kTestNow;
}

}  // namespace

class UpdateCheckTest : public QObject {
  Q_OBJECT

 private slots:
  void aGoodFeedMarksTheHelpItemAndOffersTheUpdate() {
    TestApp app;
    FeedServer server(200, "text/xml; charset=utf-8", kavorFeed());
    QVERIFY(launchAgainst(app, server));
    QCOMPARE(server.requests, 1);
    QVERIFY(updateItem(app)->isChecked());
    QCOMPARE(updateItem(app)->text().remove(QLatin1Char('&')), QString("Checked for update"));
    QCOMPARE(app.alerts.shown.size(), size_t{1});
    const Alert& offer = app.alerts.shown[0];
    QVERIFY(offer.style == Alert::Style::informational);
    QCOMPARE(offer.message,
             "An update to this app to version " + std::string(kNewerVersion) + " is available.");
    QVERIFY(offer.informative.starts_with("You are currently running Kavor version " +
                                          std::string(kKavorVersion) + ".\n"));
    QCOMPARE(offer.buttons, (std::vector<std::string>{"Ignore", "Download"}));
  }

  // Which answers count is the engine's to say; here, that one refused changes nothing.
  void anAnswerThatIsNoFeedChangesNothing() {
    TestApp app;
    FeedServer server(404, "text/xml", kavorFeed());
    QVERIFY(launchAgainst(app, server));
    QCOMPARE(server.requests, 1);
    QVERIFY(!updateItem(app)->isChecked());
    QCOMPARE(updateItem(app)->text().remove(QLatin1Char('&')), QString("Update not checked"));
    QVERIFY(app.alerts.shown.empty());
  }

  void anUnreadableFeedIsTold() {
    TestApp app;
    FeedServer server(200, "text/plain", "<html>moved</html>");
    QVERIFY(launchAgainst(app, server));
    QCOMPARE(app.alerts.shown.size(), size_t{1});
    QCOMPARE(app.alerts.shown[0].informative, std::string(kFeedUnreadableAlert));
    QCOMPARE(updateItem(app)->text().remove(QLatin1Char('&')), QString("Update not checked"));
  }
};

KAVOR_APP_TEST(UpdateCheckTest);

#include "update_check_test.moc"
