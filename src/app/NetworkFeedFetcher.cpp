#include "app/NetworkFeedFetcher.h"

#include <QHostAddress>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>

namespace tamboro {

namespace {

using Done = std::function<void(const FeedAnswer&)>;

constexpr int mostRedirects = 5;

bool isSafe(const QUrl& address, const FetchLimits& limits) {
  if (address.scheme() == QLatin1String("https")) return true;
  return limits.allowsLoopback && address.scheme() == QLatin1String("http") &&
         QHostAddress(address.host()).isLoopback();
}

QNetworkRequest makeRequest(const QUrl& address, const QString& version) {
  QNetworkRequest request(address);
  request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
  for (const auto attribute : {QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::CookieSaveControlAttribute,
                               QNetworkRequest::AuthenticationReuseAttribute})
    request.setAttribute(attribute, QNetworkRequest::Manual);
  request.setHeader(QNetworkRequest::UserAgentHeader, QString(QStringLiteral("Tamboro/") + version));
  // Left out, the first would be the user's and the second would let a small answer unpack into a huge one.
  request.setRawHeader("Accept-Language", "*");
  request.setRawHeader("Accept-Encoding", "identity");
  return request;
}

/// One answer on its way. Has a network manager of its own, so that nothing is left between two checks.
class Fetch : public QObject {
 public:
  Fetch(const QUrl& address, const QString& version, const FetchLimits& limits, Done done, QObject* parent)
      : QObject(parent),
        version_(version),
        limits_(limits),
        done_(std::move(done)),
        manager_(new QNetworkAccessManager(this)) {
    QTimer::singleShot(limits.timeOut, this, [this] { stop({FeedFailure::Kind::timeOut}); });
    ask(address);
  }

 private:
  void ask(const QUrl& address) {
    reply_ = manager_->get(makeRequest(address, version_));
    reply_->setReadBufferSize(limits_.size + 1);
    connect(reply_, &QNetworkReply::readyRead, this, &Fetch::read);
    connect(reply_, &QNetworkReply::finished, this, &Fetch::end);
  }

  void read() {
    answer_.bytes += reply_->readAll();
    if (answer_.bytes.size() > limits_.size) stop({FeedFailure::Kind::tooLarge});
  }

  void stop(const FeedFailure& failure) {
    if (!answer_.failure) answer_.failure = failure;
    reply_->abort();  // comes back through `end`
  }

  void end() {
    if (!done_) return;
    const QUrl target = reply_->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    if (!answer_.failure && !target.isEmpty()) return follow(reply_->url().resolved(target));
    if (!answer_.failure) answer_.failure = failureOfReply();
    answer();
  }

  std::optional<FeedFailure> failureOfReply() const {
    const int status = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status >= 400) return FeedFailure{FeedFailure::Kind::status, status};
    if (reply_->error() != QNetworkReply::NoError)
      return FeedFailure{FeedFailure::Kind::network, status, reply_->errorString()};
    if (status != 200) return FeedFailure{FeedFailure::Kind::status, status};
    return std::nullopt;
  }

  // The network manager's own policies follow some redirects unasked.
  void follow(const QUrl& target) {
    const bool isLessSafe =
        reply_->url().scheme() == QLatin1String("https") && target.scheme() != QLatin1String("https");
    if (isLessSafe || !isSafe(target, limits_)) {
      answer_.failure = FeedFailure{FeedFailure::Kind::insecure};
    } else if (++redirects_ > mostRedirects) {
      answer_.failure = FeedFailure{FeedFailure::Kind::network, 0, QStringLiteral("too many redirects")};
    }
    if (answer_.failure) return answer();
    answer_.bytes.clear();
    reply_->deleteLater();
    ask(target);
  }

  void answer() {
    deleteLater();
    std::exchange(done_, nullptr)(answer_);
  }

  QString version_;
  FetchLimits limits_;
  Done done_;
  int redirects_ = 0;
  FeedAnswer answer_;
  QNetworkAccessManager* manager_;
  QNetworkReply* reply_ = nullptr;
};

}  // namespace

NetworkFeedFetcher::NetworkFeedFetcher(const QString& version, const FetchLimits& limits, QObject* parent)
    : QObject(parent), version_(version), limits_(limits) {}

void NetworkFeedFetcher::fetch(const QUrl& address, Done done) {
  if (isSafe(address, limits_)) {
    new Fetch(address, version_, limits_, std::move(done), this);
    return;
  }
  QMetaObject::invokeMethod(
      this,
      [done = std::move(done)] {
        done({{}, FeedFailure{FeedFailure::Kind::insecure}});
      },
      Qt::QueuedConnection);
}

}  // namespace tamboro
