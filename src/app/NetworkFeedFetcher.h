#pragma once

#include <QObject>
#include <chrono>

#include "app/FeedFetcher.h"

namespace tamboro {

struct FetchLimits {
  std::chrono::milliseconds timeOut = std::chrono::seconds(10);  ///< for the whole answer
  qint64 size = 1 << 20;                                         ///< bytes
  bool allowsLoopback = false;                                   ///< plain HTTP from this computer itself, for tests
};

/// Over HTTPS, also behind redirects. Sends no cookies, no language and nothing of the computer: only the program's
/// name and version.
class NetworkFeedFetcher : public QObject, public FeedFetcher {
  Q_OBJECT

 public:
  explicit NetworkFeedFetcher(const QString& version, const FetchLimits& limits = {}, QObject* parent = nullptr);

  void fetch(const QUrl& address, std::function<void(const FeedAnswer&)> done) override;

 private:
  QString version_;
  FetchLimits limits_;
};

}  // namespace tamboro
