#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <chrono>
#include <filesystem>

namespace tamboro {

/// Lets a user have one running program. Two would stage sounds over each other's and save one card from two stores;
/// who starts it again wants its window.
class SingleInstance : public QObject {
  Q_OBJECT

 public:
  enum class Start {
    first,       ///< nobody else has the place, or nobody can tell: the program goes on
    handedOver,  ///< the running one has been told to come to the front
    refused      ///< the running one didn't answer; it may be ending with a long save
  };

  /// The folder is the user's own; it is made if it isn't there.
  explicit SingleInstance(const std::filesystem::path& folder, QObject* parent = nullptr);

  /// Waits no longer than this for a program that ends, or doesn't answer.
  Start claim(std::chrono::milliseconds patience);

 Q_SIGNALS:
  /// The program was started once more.
  void startedAgain();

 private:
  bool handOver() const;
  void answer();

  QString address_;
  QLockFile lock_;
  QLocalServer server_;
};

}  // namespace tamboro
