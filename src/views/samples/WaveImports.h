#pragma once

#include <QObject>
#include <cstdint>
#include <deque>
#include <exception>
#include <vector>

#include "library/store/RolandLibrary.h"

namespace tamboro {

class RolandLibrary;

/// The extension, in lower case, is "wav".
bool isWaveName(const Path& path);

/// A file to import, or a folder whose .wav files are, those in folders below included.
struct SoundSource {
  Path path;
  bool isFolder = false;

  friend bool operator==(const SoundSource&, const SoundSource&) = default;
};

/// Imports what panels and drops bring in its order, one file at a time, each as an event turn of its own; before the
/// first all folders are listed, one a turn. What is still waiting is given up when another card is opened or the last
/// window closes. A batch ends when nothing is waiting any more.
class WaveImports : public QObject {
  Q_OBJECT

 public:
  WaveImports(RolandLibrary& store, const FileSystem& files, QObject* parent);

  /// Each sample gets its file's name without extension. What is given while a batch runs joins it. Of a folder's
  /// entries those whose name begins with a point are passed over, and links to folders, which can lead in circles.
  void start(std::vector<SoundSource> sources, std::int64_t tag);

  bool isRunning() const { return isImporting_ || !unlisted_.empty() || !waiting_.empty(); }
  /// Files that have been read or have failed, and all that were found, in this batch.
  int done() const { return done_; }
  int total() const { return total_; }

 Q_SIGNALS:
  void progressChanged();
  /// The batch has ended, and of some files, or folders, nothing could be read.
  void failed(const QString& message);
  /// The batch has ended: there was no sound in its folders.
  void foundNothing();

 private:
  struct Waiting {
    SoundSource source;
    std::int64_t tag;
  };
  void queueNext();
  void step();
  void listNext();
  void importNext();
  void finish();
  void fail(const Path& path, const std::exception_ptr& error);
  void endBatch();
  void giveUp();

  RolandLibrary& store_;
  const FileSystem& files_;
  std::deque<Waiting> unlisted_;  ///< may be folders
  std::deque<Waiting> waiting_;
  std::vector<QString> failures_;
  QString lastFailure_;
  int done_ = 0;
  int total_ = 0;
  bool isQueued_ = false;
  bool isImporting_ = false;
  bool isGivenUp_ = false;  ///< what came of the import under way is of no interest any more
};

}  // namespace tamboro
