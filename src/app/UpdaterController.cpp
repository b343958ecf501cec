#include "app/UpdaterController.h"

#include <QApplication>
#include <QTimer>

#include "app/CheckingSheet.h"

namespace tamboro {

namespace {

constexpr qint64 day = 24 * 60 * 60;
constexpr double hour = 60 * 60;
/// A check that is answered sooner shows its answer only.
constexpr std::chrono::milliseconds untilShown{400};

QString textOf(const FeedFailure& failure) {
  switch (failure.kind) {
    case FeedFailure::Kind::insecure:
      return QStringLiteral("The update feed doesn't come over a secure connection.");
    case FeedFailure::Kind::timeOut:
      return QStringLiteral("The update server didn't answer in time.");
    case FeedFailure::Kind::status:
      return failure.status == 404 ? QStringLiteral("There is no update feed at its address (error 404).")
                                   : QStringLiteral("The update server reports error %1.").arg(failure.status);
    case FeedFailure::Kind::tooLarge:
      return QStringLiteral("The update feed is too large.");
    case FeedFailure::Kind::network:
      return QStringLiteral("The update server can't be reached: %1").arg(failure.text);
  }
  return {};
}

}  // namespace

const QString UpdaterController::lastCheckKey = QStringLiteral("UpdaterController.lastCheck");
const QString UpdaterController::toldVersionKey = QStringLiteral("UpdaterController.toldVersion");

UpdaterController::UpdaterController(UpdaterServices services, QObject* parent)
    : QObject(parent), services_(std::move(services)) {
  if (services_.feed.isEmpty()) return;
  QMetaObject::invokeMethod(this, &UpdaterController::checkIfDue, Qt::QueuedConnection);
  // The program can run for days.
  timer_ = services_.timers.repeat(hour, [this] { checkIfDue(); });
}

void UpdaterController::checkForUpdates() {
  if (services_.feed.isEmpty()) {
    tell(QStringLiteral("Check for Updates"),
         QStringLiteral("This build of Tamboro has no update source. New versions come the way this one came."));
    return;
  }
  isByHand_ = true;  // a quiet check under way answers the hand
  check();
  QTimer::singleShot(untilShown, this, &UpdaterController::showChecking);
}

void UpdaterController::checkIfDue() {
  const auto last = services_.defaults.integer(lastCheckKey);
  const qint64 now = services_.now();
  // A last check in the future is a clock that was set back.
  if (!last || *last > now || now - *last >= day) check();
}

void UpdaterController::check() {
  if (isChecking_) return;
  isChecking_ = true;
  services_.defaults.setInteger(lastCheckKey, services_.now());
  services_.fetcher.fetch(services_.feed, [alive = QPointer(this)](const FeedAnswer& answer) {
    if (alive) alive->finish(answer);
  });
}

/// Who gives up waiting is told nothing, unless there is news.
void UpdaterController::showChecking() {
  if (!isByHand_ || checking_ || QApplication::activeModalWidget()) return;
  checking_ = new CheckingSheet(window_);
  connect(checking_, &QDialog::rejected, this, [this] { isByHand_ = false; });
  checking_->open();
}

void UpdaterController::finish(const FeedAnswer& answer) {
  isChecking_ = false;
  const bool isByHand = std::exchange(isByHand_, false);
  if (checking_) checking_->accept();
  const auto feed = answer.failure ? std::nullopt : parseUpdateFeed(answer.bytes);
  const auto own = ReleaseVersion::read(services_.version);
  if (feed && feed->newest && (!own || feed->newest->version > *own)) {
    tellNews(*feed->newest, isByHand);
  } else if (isByHand && feed) {
    tell(QStringLiteral("Tamboro Is Up to Date"),
         QStringLiteral("Version %1 is the newest one.").arg(services_.version));
  } else if (isByHand) {
    tell(QStringLiteral("Couldn't Check for Updates"),
         answer.failure ? textOf(*answer.failure) : QStringLiteral("The update feed can't be read."));
  }
}

void UpdaterController::tellNews(const UpdateItem& item, bool isByHand) {
  const QByteArray version = item.version.text().toUtf8();
  if (!isByHand) {
    if (services_.defaults.bytes(toldVersionKey) == version) return;
    if (QApplication::activeModalWidget()) return;  // not over a sheet in use; another day
  }
  services_.defaults.setBytes(toldVersionKey, version);
  Alert alert{.title = QStringLiteral("Tamboro %1 Is Available").arg(item.version.text()),
              .text = QStringLiteral("You have version %1.").arg(services_.version)};
  if (!item.title.isEmpty()) alert.text.prepend(item.title + QStringLiteral("\n\n"));
  const bool hasPage =
      item.link.isValid() && item.link.scheme() == QLatin1String("https") && !item.link.host().isEmpty();
  if (hasPage)
    alert.buttons = {{QStringLiteral("Later"), AlertButton::Role::cancel},
                     {QStringLiteral("Open Page"), AlertButton::Role::prominent}};
  services_.prompts.alert(window_, alert, [open = services_.openPage, hasPage, page = item.link](std::size_t button) {
    if (hasPage && button == 1) open(page);
  });
}

void UpdaterController::tell(const QString& title, const QString& text) {
  services_.prompts.alert(window_, {.title = title, .text = text}, [](std::size_t) {});
}

}  // namespace tamboro
