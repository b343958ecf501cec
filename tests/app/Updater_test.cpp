#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QNetworkProxy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>

#include "app/NetworkFeedFetcher.h"
#include "app/UpdaterController.h"
#include "support/HandTimers.h"
#include "support/MemoryDefaults.h"
#include "views/HandPrompts.h"

namespace tamboro::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

QByteArray feedOf(const QByteArray& items) {
  return "<?xml version=\"1.0\"?><rss version=\"2.0\"><channel><title>Tamboro</title>"
         "<link>https://tamboro.test/feed</link>" +
         items + "</channel></rss>";
}

QByteArray item(const QByteArray& version, const QByteArray& link = "https://tamboro.test/news") {
  return "<item><title>Tamboro " + version + "</title><link>" + link + "</link><version>" + version +
         "</version></item>";
}

TEST(ReleaseVersion, ComparesComponentsAsNumbersAndPutsSuffixesBelow) {
  std::optional<ReleaseVersion> below;
  for (const char* text : {"0.9", "1.0-alpha", "v1.0-beta10", "1.0", "1.0.1", "1.2", "1.10", "2"}) {
    const auto version = ReleaseVersion::read(QString::fromLatin1(text));
    ASSERT_TRUE(version) << text;
    EXPECT_TRUE(!below || (*below < *version && !(*version < *below))) << text;
    below = version;
  }
  EXPECT_EQ(*ReleaseVersion::read(QStringLiteral("1")), *ReleaseVersion::read(QStringLiteral("1.0.0+77")));
  EXPECT_FALSE(ReleaseVersion::read(QStringLiteral("new")));
}

TEST(UpdateFeed, FindsTheNewestItemWhateverThePrefixes) {
  const std::string page = "https://tamboro.test/news";
  const std::tuple<QByteArray, std::string, std::string> cases[] = {
      {"", "", ""},
      {item("1.2") + item("1.10") + item("1.9"), "1.10", page},
      {"<item><enclosure url='x' s:version='12' s:shortVersionString='1.3'/></item>", "1.3", ""},
      {"<item><version>1.5</version><a:link href='z'/><link>\n" + QByteArray::fromStdString(page) +
           " </link><description><![CDATA[<b>]]><link>q</link></description></item>",
       "1.5", page},
      {item("1.6", "https://not a host/"), "1.6", ""},
      {item("1.7\u202E-b\u2066eta\u200B&#133;"), "1.7-beta", page},
  };
  for (const auto& [items, newest, link] : cases) {
    const auto feed = parseUpdateFeed(feedOf(items));
    ASSERT_TRUE(feed) << items.constData();
    EXPECT_EQ(feed->newest ? feed->newest->version.text().toStdString() : "", newest);
    EXPECT_EQ(feed->newest ? feed->newest->link.toString().toStdString() : "", link);
  }
}

TEST(UpdateFeed, RefusesWhatIsNoWholeFeed) {
  for (const QByteArray& bytes : {QByteArray(), QByteArray("<html><body/></html>"), feedOf(item("1.2")).chopped(1)})
    EXPECT_FALSE(parseUpdateFeed(bytes)) << bytes.constData();
}

struct HandFetcher : FeedFetcher {
  std::vector<std::function<void(const FeedAnswer&)>> asked;
  void fetch(const QUrl&, std::function<void(const FeedAnswer&)> done) override { asked.push_back(std::move(done)); }
};

/// Version 1.0 with a feed, a clock and timers run by hand.
struct Updates {
  HandPrompts prompts;
  MemoryDefaults defaults;
  HandTimers timers;
  HandFetcher fetcher;
  qint64 now = 1'800'000'000;
  std::vector<QUrl> opened;
  std::optional<UpdaterController> controller;

  void start(const char* feed = "https://tamboro.test/feed") {
    controller.emplace(UpdaterServices{prompts, defaults, timers, fetcher, QUrl(QString::fromLatin1(feed)),
                                       QStringLiteral("1.0.0"), [this](const QUrl& page) { opened.push_back(page); },
                                       [this] { return now; }});
    QCoreApplication::processEvents();
  }
  void afterHours(int hours) {
    for (int hour = 0; hour < hours; ++hour) {
      now += 60 * 60;
      timers.tick();
    }
  }
  void answer(const FeedAnswer& answer) { fetcher.asked.back()(answer); }
  /// Title and text of the alerts since the last call, each closed by its first button.
  std::vector<std::string> told() {
    std::vector<std::string> texts;
    while (!prompts.alerts.empty()) {
      const Alert& alert = prompts.alerts.front().first;
      texts.push_back((alert.title + QLatin1Char('|') + alert.text).toStdString());
      prompts.press(0);
    }
    return texts;
  }
};

TEST(UpdaterController, SaysThatThereIsNoUpdateSourceAndSendsNothing) {
  Updates updates;
  updates.start("");
  updates.controller->checkForUpdates();
  EXPECT_THAT(updates.told(), ElementsAre(HasSubstr("no update source")));
  EXPECT_TRUE(updates.fetcher.asked.empty());
}

TEST(UpdaterController, AsksOnceADayAndSpeaksOncePerVersion) {
  Updates updates;
  updates.start();
  updates.answer({{}, FeedFailure{FeedFailure::Kind::network}});
  updates.afterHours(23);
  updates.start();  // the program again, on the same day
  EXPECT_EQ(updates.fetcher.asked.size(), 1U) << "a failed check counts";
  for (const char* version : {"1.0", "1.1", "1.1", "1.2"}) {
    updates.afterHours(24);
    updates.answer({feedOf(item(version))});
  }
  EXPECT_THAT(updates.told(), ElementsAre(HasSubstr("1.1"), HasSubstr("1.2")));
  updates.now -= 100 * 24 * 60 * 60;
  updates.start();
  EXPECT_EQ(updates.fetcher.asked.size(), 6U) << "a clock that was set back must not silence the check";
}

TEST(UpdaterController, AnswersTheHandAlways) {
  using Kind = FeedFailure::Kind;
  const std::pair<FeedAnswer, std::string> cases[] = {
      {{feedOf(item("1.0-rc1"))}, "Up to Date|Version 1.0.0"},
      {{feedOf(item("1.1"))}, "1.1 Is Available|Tamboro 1.1\n\nYou have version 1.0.0."},
      {{"<rss>"}, "can't be read"},
      {{{}, FeedFailure{Kind::status, 404}}, "error 404"},
      {{{}, FeedFailure{Kind::network, 0, QStringLiteral("no route")}}, "no route"}};
  for (const auto& [answer, told] : cases) {
    Updates updates;
    updates.start();
    updates.controller->checkForUpdates();
    EXPECT_EQ(updates.fetcher.asked.size(), 1U) << "the quiet check under way answers";
    updates.answer(answer);
    updates.controller->checkForUpdates();
    updates.answer(answer);
    EXPECT_THAT(updates.told(), ElementsAre(HasSubstr(told), HasSubstr(told))) << "as often as asked";
  }
}

TEST(UpdaterController, OpensThePageOnlyWhereItIsHttps) {
  const std::pair<const char*, std::size_t> links[] = {
      {"https://tamboro.test/news", 2}, {"http://tamboro.test/news", 1}, {"file:///bin/true", 1}, {"https:///etc", 1}};
  for (const auto& [link, buttons] : links) {
    Updates updates;
    updates.start();
    updates.answer({feedOf(item("2.0", link))});
    EXPECT_EQ(updates.prompts.alerts.at(0).first.buttons.size(), buttons) << link;
    updates.controller.reset();  // the answer can come while the program ends
    updates.prompts.press(buttons - 1);
    EXPECT_EQ(updates.opened.size(), buttons - 1) << link;
  }
}

/// A web server on the loopback address that answers each path in its own way and keeps what it was asked.
class Server : public QTcpServer {
 public:
  QByteArray asked;

  Server() {
    listen(QHostAddress::LocalHost);
    connect(this, &QTcpServer::newConnection, this, [this] {
      QTcpSocket* socket = nextPendingConnection();
      connect(socket, &QTcpSocket::readyRead, this, [this, socket] { serve(*socket); });
    });
  }
  QUrl address(const QString& path) const {
    return QUrl(QStringLiteral("http://127.0.0.1:%1/%2").arg(serverPort()).arg(path));
  }

 private:
  void serve(QTcpSocket& socket) {
    const QByteArray request = socket.readAll();
    asked += request;
    const QByteArray path = request.split(' ').value(1).mid(1);
    const auto redirect = [&](const QByteArray& target) {
      socket.write("HTTP/1.1 302 Found\r\nSet-Cookie: who=you; Path=/\r\nContent-Length: 0\r\nLocation: " + target +
                   "\r\n\r\n");
    };
    if (path == "feed") socket.write("HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nfeed");
    if (path == "missing") socket.write("HTTP/1.1 404 Not Found\r\nContent-Length: 2\r\n\r\nno");
    if (path == "huge") socket.write("HTTP/1.1 200 OK\r\n\r\n" + QByteArray(100'000, 'x'));  // and never ends
    if (path == "moved") redirect("/feed");
    if (path == "elsewhere") redirect("http://192.0.2.1/feed");
  }
};

TEST(NetworkFetch, AnswersOrSaysWhyNotAndTellsNothingOfTheUser) {
  QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
  Server server;
  const auto fetch = [&](const char* path, const FetchLimits& limits) {
    std::optional<FeedAnswer> got;
    NetworkFeedFetcher fetcher(QStringLiteral("1.0.0"), limits);
    fetcher.fetch(server.address(QString::fromLatin1(path)), [&](const FeedAnswer& answer) { got = answer; });
    EXPECT_FALSE(got) << "an answer comes later";
    if (!QTest::qWaitFor([&] { return got.has_value(); }, 20'000)) return std::string("none");
    const char* kinds[] = {"insecure", "time-out", "status", "too large", "network"};
    return got->failure ? kinds[static_cast<int>(got->failure->kind)] : got->bytes.toStdString();
  };
  using namespace std::chrono_literals;
  const FetchLimits patient{15s, 5'000, true};
  EXPECT_EQ(fetch("feed", {}), "insecure") << "plain HTTP isn't even asked";
  EXPECT_TRUE(server.asked.isEmpty());
  EXPECT_EQ(fetch("moved", patient), "feed");
  const QByteArray asked = server.asked.toLower();
  for (const char* header : {"get /", "user-agent: tamboro/1.0.0\r\n", "accept-language: *\r\n"})
    EXPECT_EQ(asked.count(header), 2) << header;
  for (const char* header : {"cookie:", "referer:", "authorization:", "from:"})
    EXPECT_FALSE(asked.contains(header)) << header;
  EXPECT_EQ(fetch("feed", {15s, 4, true}), "feed") << "a full measure";
  EXPECT_EQ(fetch("feed", {15s, 3, true}), "too large");
  EXPECT_EQ(fetch("missing", patient), "status");
  EXPECT_EQ(fetch("huge", patient), "too large");
  EXPECT_EQ(fetch("hangs", {50ms, 5'000, true}), "time-out");
  EXPECT_EQ(fetch("elsewhere", patient), "insecure");
  server.close();
  EXPECT_EQ(fetch("feed", patient), "network");
}

}  // namespace
}  // namespace tamboro::test
