#include <algorithm>
#include <utility>

#include "library/CardPaths.h"
#include "library/LibraryError.h"
#include "library/saving/ExportJob.h"
#include "library/saving/SaveJob.h"
#include "library/store/RolandLibrary.h"

namespace tamboro {
namespace {

std::exception_ptr notLoaded() {
  return std::make_exception_ptr(LibraryError(LibraryError::Case::notLoaded));
}

template<class Record>
std::vector<Record> dirtyOnes(const std::vector<Record>& records) {
  std::vector<Record> dirty;
  std::copy_if(records.begin(), records.end(), std::back_inserter(dirty),
               [](const Record& record) { return record.isDirty; });
  return dirty;
}

template<class Map, class Key>
void copyEntry(const Map& from, const Key& key, Map& to) {
  if (const auto found = from.find(key); found != from.end()) to.insert(*found);
}

}  // namespace

void RolandLibrary::save(Completion done, ChangedFiles changed) {
  if (!rootURL_) return done(notLoaded());
  if (isExporting_) {
    waitingSaves_.push_back(std::move(done));
    if (changed == ChangedFiles::replace) waitingChanged_ = changed;
    return;
  }
  std::vector<Completion> waiting;
  waiting.push_back(std::move(done));
  startSave(std::move(waiting), changed);
}

SaveSnapshot RolandLibrary::takeSnapshot() const {
  SaveSnapshot snapshot;
  snapshot.root = *rootURL_;
  snapshot.serial = serial_;
  snapshot.known = known_;
  snapshot.deletions = deletedWaves_;
  for (const auto& [number, wave] : deletedWaves_) {
    if (lives_.life(RecordLives::Kind::wave, wave.id()) == number && this->wave(wave.id())) {
      snapshot.twinDeletions.insert(number);
    }
  }
  snapshot.kitDeletions = pendingKitDeletions_;
  snapshot.dirtyWaves = dirtyOnes(waves_);
  snapshot.dirtyKits = dirtyOnes(kits_);
  snapshot.tagList = tagList_;
  snapshot.waves = waves_;
  for (const Kit& kit : kits_)
    snapshot.kitSlots.insert(kit.slot);
  snapshot.tagCount = tagList_ ? static_cast<std::size_t>(tagList_->tagCount()) : 0;
  for (const Wave& wave : snapshot.dirtyWaves) {
    copyEntry(waveDocs_, wave.id(), snapshot.waveDocs);
    if (wave.isPending) copyEntry(stagedAudioFiles_, wave.id(), snapshot.stagedAudioFiles);
  }
  for (const Kit& kit : snapshot.dirtyKits)
    copyEntry(kitDocs_, kit.slot, snapshot.kitDocs);
  snapshot.tagListDoc = tagListDoc_;
  snapshot.backupBeforeSave = backupBeforeSaveEnabled_;
  snapshot.backupDestination = backupDestinationOverride_.value_or(services_.backupDestination);
  snapshot.loadCount = loadCount_;
  return snapshot;
}

void RolandLibrary::startSave(std::vector<Completion> waiting, ChangedFiles changed) {
  auto run = std::make_shared<RunningSave>();
  run->snapshot = takeSnapshot();
  run->card = lives_.card();
  run->lives = lives_.state();
  run->waiting = std::move(waiting);
  run->snapshot.replacesChanged = changed == ChangedFiles::replace;
  for (const Wave& wave : run->snapshot.dirtyWaves) {
    if (wave.isPending) begunWaves_.insert(wave.id());
  }
  running_ = run;
  holdStaged({run, &run->snapshot.stagedAudioFiles});
  publish(isExporting_, true, Property::isExporting);
  // The job sees the values alone; the files outlive it because the application waits for its jobs.
  services_.jobs.start(
      [run, &files = services_.files] {
        try {
          run->result = saveJob(run->snapshot, files, run->attempt, &run->progress);
        } catch (...) {
          run->error = std::current_exception();
        }
      },
      [this, run] { finishSave(run); });
}

void RolandLibrary::finishSave(const std::shared_ptr<RunningSave>& run) {
  std::exception_ptr error = run->error;
  if (run->result) {
    applyResult(*run);
    // All else is saved; what couldn't be removed is still there to be told of, and still unsaved.
    error = run->result->deletionError;
  } else {
    applyFailure(*run);
  }
  running_.reset();
  publish(isExporting_, false, Property::isExporting);
  for (const Completion& done : run->waiting)
    done(error);
  // One of them may have started the next save itself; then the rest goes on waiting.
  if (isExporting_ || waitingSaves_.empty()) return;
  auto waiting = std::exchange(waitingSaves_, {});
  const ChangedFiles changed = std::exchange(waitingChanged_, ChangedFiles::refuse);
  if (hasUnsavedChanges()) return startSave(std::move(waiting), changed);
  for (const Completion& done : waiting)
    done(nullptr);
}

/// The save is on the card: the store takes over what was written and keeps dirty what was edited meanwhile. A result
/// of a card that a load has replaced has nothing to say about the one that is open now.
void RolandLibrary::applyResult(const RunningSave& run) {
  lives_.saved(run.card, run.lives);
  const SaveSnapshot& snapshot = run.snapshot;
  const ExportResult& result = *run.result;
  if (snapshot.loadCount != loadCount_) return;
  applyKnown(run.attempt, result);
  applyDeletions(snapshot, result);
  // What was written for a record that has gone says nothing about the one that has taken its key since.
  const auto isStillThere = [&](RecordLives::Kind kind, std::int64_t key) {
    return lives_.life(kind, key) == run.lives.life(kind, key);
  };
  for (const Wave& written : snapshot.dirtyWaves) {
    if (isStillThere(RecordLives::Kind::wave, written.id()))
      applyWave(written, result.updatedWaveDocs.at(written.id()));
  }
  for (const Kit& written : snapshot.dirtyKits) {
    if (isStillThere(RecordLives::Kind::kit, written.slot)) applyKit(written, result.updatedKitDocs.at(written.slot));
  }
  if (result.updatedTagListDoc) {
    if (tagList_ && tagList_ == snapshot.tagList) tagList_->isDirty = false;
    tagListDoc_ = result.updatedTagListDoc;
  }
  for (const Property property : {Property::kits, Property::waves, Property::tagList, Property::pendingDeletions}) {
    Q_EMIT published(property);
  }
}

/// What a failed save has put in place is ours: the next one may replace it.
void RolandLibrary::applyFailure(const RunningSave& run) {
  lives_.saveFailed(run.card, run.lives);
  if (run.snapshot.loadCount != loadCount_) return;
  for (const auto& [file, content] : run.attempt.written)
    known_.begun(file, content);
  // What it hadn't come to is as new as before.
  std::erase_if(begunWaves_, [&](WaveId id) {
    const Wave* wave = this->wave(id);
    const auto audio = wave ? cardpaths::audioTarget(*wave) : std::nullopt;
    return !known_.isKnown(cardpaths::waveParameterFile(id / wavesPerBank, id % wavesPerBank)) &&
           !(audio && known_.isKnown(*audio));
  });
  lives_.setIdentity(run.card, cardIdentity());
}

void RolandLibrary::applyKnown(const SaveAttempt& attempt, const ExportResult& result) {
  // What couldn't be removed stays known as what it was: the next save tries again.
  for (const auto& [file, deletion] : attempt.removed) {
    if (!result.failedDeletions.contains(deletion)) known_.removed(file);
  }
  for (const auto& [file, content] : attempt.written)
    content == KnownFiles::anyContent ? known_.removed(file) : known_.written(file, content);
  lives_.setIdentity(lives_.card(), cardIdentity());
}

/// Takes out what the save has removed, but not what has been deleted since.
void RolandLibrary::applyDeletions(const SaveSnapshot& snapshot, const ExportResult& result) {
  // A new sample that was deleted while the save wrote it is on the card as a whole.
  for (auto& [number, wave] : deletedWaves_) {
    if (!snapshot.deletions.contains(number) && snapshot.stagedAudioFiles.contains(wave.id())) wave.isPending = false;
  }
  const auto isDone = [&](std::uint64_t number) { return !result.failedDeletions.contains(number); };
  std::erase_if(pendingKitDeletions_, [&](const auto& deletion) {
    const auto asked = snapshot.kitDeletions.find(deletion.first);
    return asked != snapshot.kitDeletions.end() && asked->second == deletion.second && isDone(deletion.second);
  });
  std::erase_if(deletedWaves_, [&](const auto& deletion) {
    return snapshot.deletions.contains(deletion.first) && isDone(deletion.first);
  });
  pendingDeletions_.clear();
  for (const auto& [number, wave] : deletedWaves_)
    pendingDeletions_.insert_or_assign(wave.id(), wave);
}

void RolandLibrary::applyWave(const Wave& written, const SpdDocument& document) {
  const WaveId id = written.id();
  waveDocs_.insert_or_assign(id, document);
  begunWaves_.erase(id);
  stagedAudioFiles_.erase(id);
  if (Wave* wave = findWave(id)) {
    if (*wave == written) wave->isDirty = false;
    wave->isPending = false;
  }
}

void RolandLibrary::applyKit(const Kit& written, const SpdDocument& document) {
  kitDocs_.insert_or_assign(written.slot, document);
  if (Kit* kit = findKit(written.slot); kit && *kit == written) kit->isDirty = false;
}

void RolandLibrary::exportKit(Slot slot, const Path& destination, Completion done) {
  const Kit* kit = this->kit(slot);
  if (!kit) return done(nullptr);
  if (!rootURL_) return done(notLoaded());
  auto values = std::make_shared<KitExport>(KitExport{*rootURL_, serial_, known_, destination, *kit, {}, {}, {}, {}});
  if (const auto document = kitDocs_.find(slot); document != kitDocs_.end()) values->kitDoc = document->second;
  std::set<WaveId> used;
  for (const Pad& pad : kit->pads()) {
    for (const WaveId id : {pad.wave(), pad.subWave()}) {
      if (id >= 0) used.insert(id);
    }
  }
  for (const Wave& wave : waves_) {
    if (!used.contains(wave.id())) continue;
    values->waves.push_back(wave);
    copyEntry(waveDocs_, wave.id(), values->waveDocs);
    copyEntry(stagedAudioFiles_, wave.id(), values->stagedAudioFiles);
  }
  holdStaged({values, &values->stagedAudioFiles});
  auto error = std::make_shared<std::exception_ptr>();
  services_.jobs.start(
      [values, error, &files = services_.files] {
        try {
          exportKitJob(*values, files);
        } catch (...) {
          *error = std::current_exception();
        }
      },
      [values, error, done = std::move(done)] { done(*error); });
}

}  // namespace tamboro
