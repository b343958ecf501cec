#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>
#include <array>
#include <csignal>
#include <utility>

#include "app/ColourScheme.h"
#include "app/EndSignals.h"
#include "app/SessionHold.h"
#include "support/HandJobs.h"

namespace tamboro {
namespace {

/// A bus of its own, with the desktop's end of it and the program's.
class PrivateBus {
 public:
  PrivateBus() {
    daemon_.start(QStringLiteral("dbus-daemon"),
                  {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address")});
    if (daemon_.waitForStarted() && daemon_.waitForReadyRead())
      address_ = QString::fromUtf8(daemon_.readLine().trimmed());
  }
  ~PrivateBus() {
    for (const QString& name : names_)
      QDBusConnection::disconnectFromBus(name);
    daemon_.kill();
    daemon_.waitForFinished();
  }
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

  QDBusConnection connect(const QString& name) {
    names_ << name;
    return QDBusConnection::connectToBus(address_, name);
  }

 private:
  QProcess daemon_;
  QString address_;
  QStringList names_;
};

/// Portal and login1 in one, as far as the program asks them.
class StandIn : public QDBusVirtualObject {
 public:
  explicit StandIn(const QDBusConnection& bus) : bus_(bus) {
    for (const char* path : {"/org/freedesktop/portal/desktop", "/org/freedesktop/login1", "/request"})
      bus_.registerVirtualObject(QString::fromLatin1(path), this);
    for (const char* name : {"org.freedesktop.portal.Desktop", "org.freedesktop.login1"})
      bus_.registerService(QString::fromLatin1(name));
    EXPECT_EQ(::pipe(pipe.data()), 0);
  }

  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
    calls << message.interface() + QLatin1Char('.') + message.member();
    if (message.member() == QLatin1String("Read"))
      bus.send(message.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(1U))))));
    else if (message.path().endsWith(QLatin1String("login1")))
      bus.send(message.createReply(QVariant::fromValue(QDBusUnixFileDescriptor(pipe[1]))));
    else if (message.member() == QLatin1String("Inhibit"))
      bus.send(message.createReply(QVariant::fromValue(QDBusObjectPath(QStringLiteral("/request")))));
    return true;
  }
  void change(const char* space, uint value) {
    auto signal =
        QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/portal/desktop"),
                                   QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"));
    signal << QString::fromLatin1(space) << QStringLiteral("color-scheme") << QVariant::fromValue(QDBusVariant(value));
    bus_.send(signal);
  }
  /// Whether somebody still holds the inhibitor that was handed out; ours is closed first.
  bool isHeld() {
    if (pipe[1] >= 0) ::close(std::exchange(pipe[1], -1));
    pollfd end{pipe[0], POLLIN, 0};
    return ::poll(&end, 1, 0) == 0;
  }

  QStringList calls;
  std::array<int, 2> pipe{-1, -1};

 private:
  QDBusConnection bus_;
};

TEST(ColourScheme, FollowsThePortalAndNothingElse) {
  PrivateBus bus;
  StandIn portal(bus.connect(QStringLiteral("portal")));
  // The stand-in answers on this thread, so only when the first wait is over.
  ColourScheme scheme(bus.connect(QStringLiteral("program")));
  EXPECT_EQ(scheme.wish(), ColourScheme::Wish::unknown);
  EXPECT_TRUE(QTest::qWaitFor([&] { return scheme.wish() == ColourScheme::Wish::dark; }));
  portal.change("org.freedesktop.appearance", 2);
  EXPECT_TRUE(QTest::qWaitFor([&] { return scheme.wish() == ColourScheme::Wish::light; }));
  portal.change("org.elsewhere", 1);
  portal.change("org.freedesktop.appearance", 0);
  EXPECT_TRUE(QTest::qWaitFor([&] { return scheme.wish() != ColourScheme::Wish::light; }));
  EXPECT_EQ(scheme.wish(), ColourScheme::Wish::unknown);
}

TEST(SessionHold, HoldsShutdownAndLogoutWhileALongJobRuns) {
  PrivateBus bus;
  StandIn desktop(bus.connect(QStringLiteral("desktop")));
  auto hand = std::make_unique<test::HandJobs>();
  test::HandJobs& jobs = *hand;
  SessionHold hold(std::move(hand), bus.connect(QStringLiteral("system")), bus.connect(QStringLiteral("session")));
  hold.start([] {}, [] {});
  EXPECT_TRUE(QTest::qWaitFor([&] { return desktop.calls.size() == 2; }));
  QTest::qWait(50);  // the answers' way back
  EXPECT_TRUE(desktop.isHeld());
  jobs.waitForAll();
  EXPECT_TRUE(QTest::qWaitFor([&] { return desktop.calls.size() == 3 && !desktop.isHeld(); }));
  EXPECT_EQ(desktop.calls.last(), QStringLiteral("org.freedesktop.portal.Request.Close"));
}

TEST(EndSignals, AreHeardByTheLoop) {
  EndSignals signals;
  QSignalSpy asked(&signals, &EndSignals::asked);
  std::raise(SIGTERM);
  EXPECT_TRUE(asked.wait());
}

}  // namespace
}  // namespace tamboro
