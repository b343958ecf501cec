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

#include "app/EndSignals.h"
#include "app/SessionHold.h"
#include "support/HandJobs.h"

namespace tamboro {
namespace {

QString q(const char* text) {
  return QString::fromUtf8(text);
}

/// A bus of its own, with the desktop's end of it and the program's.
struct PrivateBus {
  QProcess daemon;
  QString address;
  QStringList names;

  PrivateBus() {
    daemon.start(q("dbus-daemon"), {q("--session"), q("--nofork"), q("--print-address")});
    if (daemon.waitForStarted() && daemon.waitForReadyRead()) address = QString::fromUtf8(daemon.readLine().trimmed());
  }
  ~PrivateBus() {
    for (const QString& name : names)
      QDBusConnection::disconnectFromBus(name);
    daemon.kill();
    daemon.waitForFinished();
  }
  QDBusConnection connect(const QString& name) {
    names << name;
    return QDBusConnection::connectToBus(address, name);
  }
};

/// Portal and login1 in one, as far as the program asks them to hold.
class StandIn : public QDBusVirtualObject {
 public:
  explicit StandIn(QDBusConnection bus) {
    for (const char* path : {"/org/freedesktop/portal/desktop", "/org/freedesktop/login1", "/request"})
      bus.registerVirtualObject(q(path), this);
    for (const char* name : {"org.freedesktop.portal.Desktop", "org.freedesktop.login1"})
      bus.registerService(q(name));
    EXPECT_EQ(::pipe(pipe.data()), 0);
  }

  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
    calls << message.interface() + QLatin1Char('.') + message.member();
    if (message.path().endsWith(QLatin1String("login1")))
      bus.send(message.createReply(QVariant::fromValue(QDBusUnixFileDescriptor(pipe[1]))));
    else if (message.member() == QLatin1String("Inhibit"))
      bus.send(message.createReply(QVariant::fromValue(QDBusObjectPath(q("/request")))));
    return true;
  }
  /// Whether somebody still holds the inhibitor that was handed out; ours is closed first.
  bool isHeld() {
    if (pipe[1] >= 0) ::close(std::exchange(pipe[1], -1));
    pollfd end{pipe[0], POLLIN, 0};
    return ::poll(&end, 1, 0) == 0;
  }

  QStringList calls;
  std::array<int, 2> pipe{-1, -1};
};

TEST(SessionHold, HoldsShutdownAndLogoutWhileALongJobRuns) {
  PrivateBus bus;
  StandIn desktop(bus.connect(q("desktop")));
  auto hand = std::make_unique<test::HandJobs>();
  test::HandJobs& jobs = *hand;
  SessionHold hold(std::move(hand), bus.connect(q("system")), bus.connect(q("session")));
  hold.start([] {}, [] {});
  EXPECT_TRUE(QTest::qWaitFor([&] { return desktop.calls.size() == 2; }));
  QTest::qWait(50);  // the answers' way back
  EXPECT_TRUE(desktop.isHeld());
  jobs.waitForAll();
  EXPECT_TRUE(QTest::qWaitFor([&] { return desktop.calls.size() == 3 && !desktop.isHeld(); }));
  EXPECT_EQ(desktop.calls.last(), q("org.freedesktop.portal.Request.Close"));
}

TEST(EndSignals, AreHeardByTheLoop) {
  EndSignals signals;
  QSignalSpy asked(&signals, &EndSignals::asked);
  std::raise(SIGTERM);
  EXPECT_TRUE(asked.wait());
}

}  // namespace
}  // namespace tamboro
