#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <functional>
#include <optional>

namespace tamboro {

struct FeedFailure {
  enum class Kind {
    insecure,  ///< the address, or one it leads to, isn't HTTPS
    timeOut,
    status,  ///< the server answered with an error
    tooLarge,
    network  ///< no connection, no name, no trusted certificate, too many redirects
  };
  Kind kind;
  int status = 0;     ///< of HTTP
  QString text = {};  ///< the network's own words
};

struct FeedAnswer {
  QByteArray bytes = {};
  std::optional<FeedFailure> failure = std::nullopt;
};

/// Gets the update feed, behind an interface so that tests answer in its place.
class FeedFetcher {
 public:
  FeedFetcher() = default;
  FeedFetcher(const FeedFetcher&) = delete;
  FeedFetcher& operator=(const FeedFetcher&) = delete;
  virtual ~FeedFetcher() = default;

  /// Returns at once; `done` runs once, later, on the main thread, or never where the fetcher has been destroyed.
  virtual void fetch(const QUrl& address, std::function<void(const FeedAnswer&)> done) = 0;
};

}  // namespace tamboro
