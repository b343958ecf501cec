#pragma once

#include <QObject>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "library/contents/OpenCard.h"
#include "library/imports/ImportPlace.h"
#include "library/imports/SoundSource.h"
#include "library/imports/StagingFolder.h"
#include "platform/BackgroundJobs.h"

namespace tamboro {

/// How far the files are that came together, by panels and drops. What is added while a batch runs joins it.
struct ImportBatch {
  bool isRunning = false;
  int done = 0;              ///< files that were imported or have failed
  int waiting = 0;           ///< files that were found and aren't done, that under way included
  bool isDropped = false;    ///< those that waited were given up: there is nothing to tell of it
  std::vector<Path> failed;  ///< files, and folders, of which nothing could be read
  std::exception_ptr lastError;

  int total() const { return done + waiting; }
};

/// The imports of the open card, one after another, since each chooses its id and its name before its copy and takes
/// them behind it. A sample asked for by itself goes before the rest of a batch, whose files, and before the first of
/// them the listing of each folder, are event turns of their own. Main thread only; needs the event loop for batches.
class ImportQueue : public QObject {
  Q_OBJECT

 public:
  /// The new sample's id, or why there is none.
  using Completion = std::function<void(const std::exception_ptr& error, WaveId id)>;

  /// All outlive the queue and its jobs.
  ImportQueue(OpenCard& card, RecordLives& lives, StagingFolder& staging, FileSystem& files, BackgroundJobs& jobs);

  /// One file under this name; the order of the calls is kept. Ends with `notLoaded` where no card is open or another
  /// one has been opened since, `noFreeSlot`, or what kept the file from being copied; where it is refused at once,
  /// before the call returns.
  void add(const Path& source, std::string name, std::int64_t tag, Completion done);
  /// Files, and what lies in folders, each under its own name, in this order.
  void addBatch(std::vector<SoundSource> sources, std::int64_t tag);
  const ImportBatch& batch() const { return batch_; }
  /// Begins no other file of the batch; that under way comes to its end.
  void dropWaiting();

 Q_SIGNALS:
  /// The card has a new sample.
  void imported();
  void batchChanged();

 private:
  struct Import {
    Path source;
    std::string name;
    std::int64_t tag = 0;
    Completion done;                          ///< none: one of the batch
    std::uint64_t loadCount = 0;              ///< the load whose card it is for
    std::shared_ptr<const StagedFiles> held;  ///< the source, where it is staged itself
  };
  struct Waiting {
    SoundSource source;
    std::int64_t tag;
  };
  Import made(const Path& source, std::string name, std::int64_t tag, Completion done);
  void startAsked();
  void queueStep();
  void step();
  void listNext();
  void start(Import import);
  void stage(const ImportPlace& place);
  WaveId take(const ImportPlace& place, const Path& staged);
  void end(const std::exception_ptr& error, WaveId id);
  bool runsOneOfBatch() const { return running_ && !running_->done; }
  void fail(const Path& path, const std::exception_ptr& error);
  void tellBatch();

  OpenCard& card_;
  RecordLives& lives_;
  StagingFolder& staging_;
  FileSystem& files_;
  BackgroundJobs& jobs_;
  std::optional<Import> running_;
  std::deque<Import> asked_;  ///< by themselves
  bool isStartingAsked_ = false;
  std::deque<Waiting> unlisted_;  ///< of the batch; may be folders
  std::deque<Waiting> listed_;
  bool isStepQueued_ = false;
  bool isUnderWayDropped_ = false;  ///< how the one of the batch ends is of no interest any more
  ImportBatch batch_;
};

}  // namespace tamboro
