#include "library/imports/ImportQueue.h"

#include <algorithm>
#include <utility>

#include "library/LibraryError.h"
#include "library/imports/StagingJob.h"

namespace tamboro {

ImportQueue::ImportQueue(OpenCard& card, RecordLives& lives, StagingFolder& staging, FileSystem& files,
                         BackgroundJobs& jobs)
    : card_(card), lives_(lives), staging_(staging), files_(files), jobs_(jobs) {}

ImportQueue::Import ImportQueue::made(const Path& source, std::string name, std::int64_t tag, Completion done) {
  return {source, std::move(name), tag, std::move(done), card_.loadCount, staging_.hold(source)};
}

void ImportQueue::add(const Path& source, std::string name, std::int64_t tag, Completion done) {
  asked_.push_back(made(source, std::move(name), tag, std::move(done)));
  startAsked();
}

void ImportQueue::startAsked() {
  // The caller of a refused import may ask for the next file from its completion: that one waits for this loop.
  if (isStartingAsked_) return;
  isStartingAsked_ = true;
  while (!running_ && !asked_.empty()) {
    Import next = std::move(asked_.front());
    asked_.pop_front();
    start(std::move(next));
  }
  isStartingAsked_ = false;
}

void ImportQueue::addBatch(std::vector<SoundSource> sources, std::int64_t tag) {
  if (sources.empty()) return;
  if (!batch_.isRunning) batch_ = {};
  batch_.isDropped = false;
  for (SoundSource& source : sources) {
    if (!source.isFolder) ++batch_.waiting;
    unlisted_.push_back({std::move(source), tag});
  }
  queueStep();
  tellBatch();
}

/// Never from the end of the one before: files that are refused at once would pile up on the stack.
void ImportQueue::queueStep() {
  if (isStepQueued_ || runsOneOfBatch() || (unlisted_.empty() && listed_.empty())) return;
  isStepQueued_ = true;
  QMetaObject::invokeMethod(this, &ImportQueue::step, Qt::QueuedConnection);
}

void ImportQueue::step() {
  isStepQueued_ = false;
  for (; !unlisted_.empty(); unlisted_.pop_front()) {
    if (unlisted_.front().source.isFolder) return listNext();
    listed_.push_back(std::move(unlisted_.front()));
  }
  if (running_ || listed_.empty()) return;  // the end of the one under way comes back here
  const Waiting next = std::move(listed_.front());
  listed_.pop_front();
  isUnderWayDropped_ = false;
  start(made(next.source.path, sampleName(next.source.path), next.tag, nullptr));
}

void ImportQueue::listNext() {
  const Waiting folder = std::move(unlisted_.front());
  unlisted_.pop_front();
  try {
    const std::vector<SoundSource> found = soundsIn(files_, folder.source.path);
    // Clang 14, which builds the fuzz targets, can't read libstdc++'s views.
    std::for_each(found.rbegin(), found.rend(), [&](const SoundSource& source) {
      if (!source.isFolder) ++batch_.waiting;
      unlisted_.push_front({source, folder.tag});
    });
  } catch (const FileError&) {
    fail(folder.source.path, std::current_exception());
  }
  queueStep();
  tellBatch();
}

void ImportQueue::start(Import import) {
  running_ = std::move(import);
  if (!card_.root || running_->loadCount != card_.loadCount)
    return end(libraryError(LibraryError::Case::notLoaded), noWave);
  const auto place = importPlace(card_, files_, staging_, running_->source);
  if (!place) return end(libraryError(LibraryError::Case::noFreeSlot), noWave);
  stage(*place);
}

void ImportQueue::stage(const ImportPlace& place) {
  card_.maybeFree = waveId(place.bank, place.fileNumber);
  const Path staged = staging_.path() / bankFolder(place.bank) / place.fileName;
  jobs_.attempt([source = running_->source, staged, &files = files_] { stageAudio(files, source, staged); },
                [this, place, staged](const std::exception_ptr& error) {
                  if (error) return end(error, noWave);
                  if (running_->loadCount == card_.loadCount) return end(nullptr, take(place, staged));
                  staging_.remove(staged);
                  end(libraryError(LibraryError::Case::notLoaded), noWave);
                });
}

WaveId ImportQueue::take(const ImportPlace& place, const Path& staged) {
  Wave wave{place.bank, place.fileNumber,
            newWaveNode(running_->name, running_->tag, bankFolder(place.bank) + "/" + place.fileName), true, true};
  const WaveId id = wave.id();
  card_.insert(std::move(wave));
  card_.stagedAudioFiles.insert_or_assign(id, staged);
  lives_.renew(RecordLives::Kind::wave, id);
  Q_EMIT imported();
  return id;
}

void ImportQueue::end(const std::exception_ptr& error, WaveId id) {
  Import ended = std::move(*running_);
  running_.reset();
  ended.held.reset();
  if (ended.done) {
    ended.done(error, id);
  } else {
    ++batch_.done;
    --batch_.waiting;
    if (error && !isUnderWayDropped_) fail(ended.source, error);
  }
  startAsked();
  queueStep();
  if (!ended.done) tellBatch();
}

void ImportQueue::fail(const Path& path, const std::exception_ptr& error) {
  batch_.failed.push_back(path);
  batch_.lastError = error;
}

void ImportQueue::dropWaiting() {
  if (!batch_.isRunning) return;
  unlisted_.clear();
  listed_.clear();
  isUnderWayDropped_ = true;
  batch_.isDropped = true;
  batch_.failed.clear();
  batch_.waiting = runsOneOfBatch() ? 1 : 0;
  tellBatch();
}

void ImportQueue::tellBatch() {
  batch_.isRunning = runsOneOfBatch() || !unlisted_.empty() || !listed_.empty();
  Q_EMIT batchChanged();
}

}  // namespace tamboro
