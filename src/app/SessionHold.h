#pragma once

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <QTimer>
#include <memory>

#include "platform/BackgroundJobs.h"

namespace tamboro {

/// Jobs that hold the computer's shutdown, its sleep and the user's logout while one of them runs: by an inhibitor of
/// `org.freedesktop.login1` and by `org.freedesktop.portal.Inhibit`, each where there is one. Short ones don't trouble
/// the desktop.
class SessionHold : public QObject, public BackgroundJobs {
  Q_OBJECT

 public:
  explicit SessionHold(std::unique_ptr<BackgroundJobs> jobs,
                       const QDBusConnection& system = QDBusConnection::systemBus(),
                       const QDBusConnection& session = QDBusConnection::sessionBus());
  ~SessionHold() override;

  JobId start(std::function<void()> work, std::function<void()> done) override;
  void waitFor(JobId job) override { jobs_->waitFor(job); }
  void waitForAll() override { jobs_->waitForAll(); }

 private:
  void hold();
  void release();

  std::unique_ptr<BackgroundJobs> jobs_;
  QDBusConnection system_;
  QDBusConnection session_;
  QTimer patience_;
  int running_ = 0;
  int holdCount_ = 0;                  ///< an answer that belongs to an earlier hold is let go
  QDBusUnixFileDescriptor inhibitor_;  ///< login1's: closed, it ends
  QDBusObjectPath request_;            ///< the portal's
};

}  // namespace tamboro
