#include "library/saving/SaveQueue.h"

#include <utility>

#include "library/LibraryError.h"

namespace tamboro {

SaveQueue::SaveQueue(OpenCard& card, RecordLives& lives, StagingFolder& staging, FileSystem& files,
                     BackgroundJobs& jobs, std::function<BackupChoice()> backup)
    : card_(card), lives_(lives), staging_(staging), files_(files), jobs_(jobs), backup_(std::move(backup)) {}

void SaveQueue::save(Completion done, ChangedFiles changed) {
  if (!card_.root) return done(libraryError(LibraryError::Case::notLoaded));
  if (isRunning()) {
    waiting_.push_back(std::move(done));
    if (changed == ChangedFiles::replace) waitingChanged_ = changed;
    return;
  }
  std::vector<Completion> callers;
  callers.push_back(std::move(done));
  start(std::move(callers), changed);
}

void SaveQueue::start(std::vector<Completion> callers, ChangedFiles changed) {
  const auto run = std::make_shared<SaveRun>(card_, lives_, backup_(), changed);
  staging_.hold({run, &run->stagedFiles()});
  running_ = run;
  // The job sees the run alone; the files outlive it because the application waits for its jobs.
  job_ =
      jobs_.attempt([run, &files = files_] { run->write(files); },
                    [this, callers = std::move(callers)](const std::exception_ptr& error) { finish(error, callers); });
  Q_EMIT runningChanged();
}

void SaveQueue::finish(const std::exception_ptr& error, const std::vector<Completion>& callers) {
  std::exception_ptr told = error;
  if (error) {
    running_->applyFailure(card_, lives_);
  } else {
    if (running_->apply(card_, lives_)) Q_EMIT applied();
    told = running_->removalError();
  }
  running_.reset();
  Q_EMIT runningChanged();
  for (const Completion& done : callers)
    done(told);
  // One of them may have started the next save itself; then the rest goes on waiting.
  if (isRunning() || waiting_.empty()) return;
  auto waiting = std::exchange(waiting_, {});
  const ChangedFiles changed = std::exchange(waitingChanged_, ChangedFiles::refuse);
  if (card_.hasUnsavedChanges()) return start(std::move(waiting), changed);
  for (const Completion& done : waiting)
    done(nullptr);
}

void SaveQueue::waitForAll() {
  // Each that follows has a job of its own.
  for (BackgroundJobs::JobId last = 0; isRunning() && job_ != last;) {
    last = job_;
    jobs_.waitFor(job_);
  }
}

}  // namespace tamboro
