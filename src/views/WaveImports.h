#pragma once

#include <QObject>
#include <cstdint>
#include <deque>
#include <exception>
#include <filesystem>
#include <vector>

namespace tamboro {

class RolandLibrary;

/// Imports the files of panels and drops in their order, one at a time, each as an event turn of its own. Files still
/// waiting are given up when another card is opened or the last window closes.
class WaveImports : public QObject {
  Q_OBJECT

 public:
  WaveImports(RolandLibrary& store, QObject* parent);

  /// Each sample gets its file's name without extension. Files given while others are waiting follow them.
  void start(std::vector<std::filesystem::path> files, std::int64_t tag);

  bool isRunning() const { return isImporting_ || !waiting_.empty(); }
  /// Files that have been read or have failed, and all that were given, since the last time nothing ran.
  int done() const { return done_; }
  int total() const { return total_; }

 Q_SIGNALS:
  void progressChanged();
  /// A file couldn't be imported; the others follow.
  void failed(const QString& message);

 private:
  struct File {
    std::filesystem::path path;
    std::int64_t tag;
  };
  void queueNext();
  void importNext();
  void finish(const std::exception_ptr& error);
  void giveUp();

  RolandLibrary& store_;
  std::deque<File> waiting_;
  int done_ = 0;
  int total_ = 0;
  bool isQueued_ = false;
  bool isImporting_ = false;
  bool isGivenUp_ = false;  ///< what came of the import under way is of no interest any more
};

}  // namespace tamboro
