#include "library/saving/SaveRun.h"

#include <algorithm>
#include <iterator>

#include "library/CardPaths.h"

namespace tamboro {

namespace {

template<class Record>
std::vector<Record> dirtyOnes(const std::vector<Record>& records) {
  std::vector<Record> dirty;
  std::ranges::copy_if(records, std::back_inserter(dirty), [](const Record& record) { return record.isDirty; });
  return dirty;
}

template<class Map, class Key>
void copyEntry(const Map& from, const Key& key, Map& to) {
  if (const auto found = from.find(key); found != from.end()) to.insert(*found);
}

/// Those whose id another sample has had since the card was read.
std::set<std::uint64_t> twinDeletions(const OpenCard& card, const RecordLives& lives) {
  std::set<std::uint64_t> twins;
  for (const auto& [number, wave] : card.deletedWaves) {
    if (lives.life(RecordLives::Kind::wave, wave.id()) == number && card.wave(wave.id())) twins.insert(number);
  }
  return twins;
}

SaveSnapshot snapshotOf(const OpenCard& card, const RecordLives& lives) {
  SaveSnapshot snapshot;
  snapshot.root = *card.root;
  snapshot.serial = card.serial;
  snapshot.known = card.known;
  snapshot.deletions = card.deletedWaves;
  snapshot.twinDeletions = twinDeletions(card, lives);
  snapshot.kitDeletions = card.pendingKitDeletions;
  snapshot.dirtyWaves = dirtyOnes(card.waves);
  snapshot.dirtyKits = dirtyOnes(card.kits);
  snapshot.tagList = card.tagList;
  snapshot.waves = card.waves;
  for (const Kit& kit : card.kits)
    snapshot.kitSlots.insert(kit.slot);
  snapshot.tagCount = card.tagList ? static_cast<std::size_t>(card.tagList->tagCount()) : 0;
  for (const Wave& wave : snapshot.dirtyWaves) {
    copyEntry(card.waveDocs, wave.id(), snapshot.waveDocs);
    if (wave.isPending) copyEntry(card.stagedAudioFiles, wave.id(), snapshot.stagedAudioFiles);
  }
  for (const Kit& kit : snapshot.dirtyKits)
    copyEntry(card.kitDocs, kit.slot, snapshot.kitDocs);
  snapshot.tagListDoc = card.tagListDoc;
  return snapshot;
}

void applyWave(OpenCard& card, const Wave& written, const SpdDocument& document) {
  const WaveId id = written.id();
  card.waveDocs.insert_or_assign(id, document);
  card.begunWaves.erase(id);
  card.stagedAudioFiles.erase(id);
  if (Wave* wave = card.wave(id)) {
    if (*wave == written) wave->isDirty = false;
    wave->isPending = false;
  }
}

void applyKit(OpenCard& card, const Kit& written, const SpdDocument& document) {
  card.kitDocs.insert_or_assign(written.slot, document);
  if (Kit* kit = card.kit(written.slot); kit && *kit == written) kit->isDirty = false;
}

}  // namespace

SaveRun::SaveRun(OpenCard& card, const RecordLives& lives, const BackupChoice& backup, ChangedFiles changed)
    : snapshot_(snapshotOf(card, lives)), loadCount_(card.loadCount), cardNumber_(lives.card()), lives_(lives.state()) {
  snapshot_.replacesChanged = changed == ChangedFiles::replace;
  snapshot_.backupBeforeSave = backup.isWanted;
  snapshot_.backupDestination = backup.destination;
  for (const Wave& wave : snapshot_.dirtyWaves) {
    if (wave.isPending) card.begunWaves.insert(wave.id());
  }
}

void SaveRun::write(FileSystem& files) {
  result_ = saveJob(snapshot_, files, attempt_, &progress_);
}

bool SaveRun::apply(OpenCard& card, RecordLives& lives) const {
  lives.saved(cardNumber_, lives_);
  if (loadCount_ != card.loadCount) return false;
  applyKnown(card);
  lives.setIdentity(cardNumber_, card.identity());
  applyDeletions(card);
  // What was written for a record that has gone says nothing about the one that has taken its key since.
  const auto isStillThere = [&](RecordLives::Kind kind, std::int64_t key) {
    return lives.life(kind, key) == lives_.life(kind, key);
  };
  for (const Wave& written : snapshot_.dirtyWaves) {
    if (isStillThere(RecordLives::Kind::wave, written.id()))
      applyWave(card, written, result_->updatedWaveDocs.at(written.id()));
  }
  for (const Kit& written : snapshot_.dirtyKits) {
    if (isStillThere(RecordLives::Kind::kit, written.slot))
      applyKit(card, written, result_->updatedKitDocs.at(written.slot));
  }
  if (result_->updatedTagListDoc) {
    if (card.tagList && card.tagList == snapshot_.tagList) card.tagList->isDirty = false;
    card.tagListDoc = result_->updatedTagListDoc;
  }
  return true;
}

void SaveRun::applyFailure(OpenCard& card, RecordLives& lives) const {
  lives.saveFailed(cardNumber_, lives_);
  if (loadCount_ != card.loadCount) return;
  for (const auto& [file, content] : attempt_.written)
    card.known.begun(file, content);
  // What it hadn't come to is as new as before.
  std::erase_if(card.begunWaves, [&](WaveId id) {
    const Wave* wave = card.wave(id);
    const auto audio = wave ? cardpaths::audioTarget(*wave) : std::nullopt;
    return !card.known.isKnown(cardpaths::waveParameterFile(id / wavesPerBank, id % wavesPerBank)) &&
           !(audio && card.known.isKnown(*audio));
  });
  lives.setIdentity(cardNumber_, card.identity());
}

void SaveRun::applyKnown(OpenCard& card) const {
  // What couldn't be removed stays known as what it was: the next save tries again.
  for (const auto& [file, deletion] : attempt_.removed) {
    if (!result_->failedDeletions.contains(deletion)) card.known.removed(file);
  }
  for (const auto& [file, content] : attempt_.written)
    content == KnownFiles::anyContent ? card.known.removed(file) : card.known.written(file, content);
}

/// Takes out what the save has removed, but not what has been deleted since.
void SaveRun::applyDeletions(OpenCard& card) const {
  // A new sample that was deleted while the save wrote it is on the card as a whole.
  for (auto& [number, wave] : card.deletedWaves) {
    if (!snapshot_.deletions.contains(number) && snapshot_.stagedAudioFiles.contains(wave.id())) wave.isPending = false;
  }
  const auto isDone = [&](std::uint64_t number) { return !result_->failedDeletions.contains(number); };
  std::erase_if(card.pendingKitDeletions, [&](const auto& deletion) {
    const auto asked = snapshot_.kitDeletions.find(deletion.first);
    return asked != snapshot_.kitDeletions.end() && asked->second == deletion.second && isDone(deletion.second);
  });
  std::erase_if(card.deletedWaves, [&](const auto& deletion) {
    return snapshot_.deletions.contains(deletion.first) && isDone(deletion.first);
  });
  card.pendingDeletions.clear();
  for (const auto& [number, wave] : card.deletedWaves)
    card.pendingDeletions.insert_or_assign(wave.id(), wave);
}

}  // namespace tamboro
