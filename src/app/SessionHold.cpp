#include "app/SessionHold.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace tamboro {

namespace {

constexpr int longJob = 250;  // milliseconds

QString reason() {
  return QStringLiteral("Files are being written.");
}

}  // namespace

SessionHold::SessionHold(std::unique_ptr<BackgroundJobs> jobs, const QDBusConnection& system,
                         const QDBusConnection& session)
    : jobs_(std::move(jobs)), system_(system), session_(session) {
  patience_.setSingleShot(true);
  patience_.setInterval(longJob);
  connect(&patience_, &QTimer::timeout, this, &SessionHold::hold);
}

SessionHold::~SessionHold() {
  release();
}

BackgroundJobs::JobId SessionHold::start(std::function<void()> work, std::function<void()> done) {
  if (running_++ == 0) patience_.start();
  return jobs_->start(std::move(work), [this, done = std::move(done)] {
    done();
    // `done` may have started the next one.
    if (--running_ == 0) release();
  });
}

void SessionHold::hold() {
  const int count = ++holdCount_;
  if (system_.isConnected()) {
    auto call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("Inhibit"));
    call << QStringLiteral("shutdown:sleep") << QStringLiteral("Tamboro") << reason() << QStringLiteral("block");
    auto* answer = new QDBusPendingCallWatcher(system_.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, count] {
      answer->deleteLater();
      const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *answer;
      if (reply.isValid() && count == holdCount_ && running_ > 0) inhibitor_ = reply.value();
    });
  }
  if (session_.isConnected()) {
    constexpr uint logoutAndSuspend = 1 | 4;
    auto call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"), QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Inhibit"), QStringLiteral("Inhibit"));
    call << QString() << logoutAndSuspend << QVariantMap{{QStringLiteral("reason"), reason()}};
    auto* answer = new QDBusPendingCallWatcher(session_.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, count] {
      answer->deleteLater();
      const QDBusPendingReply<QDBusObjectPath> reply = *answer;
      if (!reply.isValid()) return;
      request_ = reply.value();
      if (count != holdCount_ || running_ == 0) release();
    });
  }
}

void SessionHold::release() {
  patience_.stop();
  inhibitor_ = {};
  if (request_.path().isEmpty()) return;
  auto call = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.portal.Desktop"), request_.path(),
                                             QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Close"));
  session_.call(call, QDBus::NoBlock);
  request_ = {};
}

}  // namespace tamboro
