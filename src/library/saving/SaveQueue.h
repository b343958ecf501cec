#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <vector>

#include "library/imports/StagingFolder.h"
#include "library/saving/SaveRun.h"
#include "platform/BackgroundJobs.h"

namespace tamboro {

/// The saves of the open card, one at a time. Main thread only.
class SaveQueue : public QObject {
  Q_OBJECT

 public:
  using Completion = std::function<void(std::exception_ptr error)>;

  /// All outlive the queue and its jobs; `backup` is asked as each save begins.
  SaveQueue(OpenCard& card, RecordLives& lives, StagingFolder& staging, FileSystem& files, BackgroundJobs& jobs,
            std::function<BackupChoice()> backup);

  /// Saves what is unsaved now. While a save runs, the call waits for its end; then one save serves all that wait, if
  /// anything is still unsaved. `done` gets what `saveJob` threw, `notLoaded` at once where no card is open, or why a
  /// file couldn't be removed where all else is saved. `replace` of any who wait holds for all of them.
  void save(Completion done, ChangedFiles changed);
  bool isRunning() const { return running_ != nullptr; }
  /// Of the save that runs; null while none does. It isn't announced.
  const SaveProgress* progress() const { return running_ ? &running_->progress() : nullptr; }
  /// Blocks until every save that was asked for has ended and was applied.
  void waitForAll();

 Q_SIGNALS:
  void runningChanged();
  /// Flags, documents and pending deletions are as the save has left them; told while it still counts as running.
  void applied();

 private:
  void start(std::vector<Completion> callers, ChangedFiles changed);
  void finish(const std::exception_ptr& error, const std::vector<Completion>& callers);

  OpenCard& card_;
  RecordLives& lives_;
  StagingFolder& staging_;
  FileSystem& files_;
  BackgroundJobs& jobs_;
  std::function<BackupChoice()> backup_;
  std::shared_ptr<SaveRun> running_;
  BackgroundJobs::JobId job_ = 0;  ///< of the save that runs
  std::vector<Completion> waiting_;
  ChangedFiles waitingChanged_ = ChangedFiles::refuse;
};

}  // namespace tamboro
