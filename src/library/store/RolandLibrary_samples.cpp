#include <algorithm>

#include "library/LibraryError.h"
#include "library/store/RolandLibrary_edit.h"

namespace tamboro {

void RolandLibrary::importWave(const Path& source, const std::string& name, std::int64_t tag, Completion done) {
  imports_.add(source, name, tag, [done = std::move(done)](const std::exception_ptr& error, WaveId) { done(error); });
}

void RolandLibrary::duplicateWave(WaveId id, Completion done) {
  const Wave* source = wave(id);
  if (!source) return done(nullptr);
  const auto audio = audioURL(*source);
  if (!audio) return done(libraryError(LibraryError::Case::notLoaded));
  const auto copySettings = [this, original = *source](WaveId copy) {
    edit<WaveRecord>({copy}, [&](Wave& wave) {
      for (const elements::IntegerLeaf& leaf :
           {elements::waveTempo, elements::waveBeat, elements::waveStart, elements::waveEnd}) {
        leaf.write(wave.node, leaf.read(original.node));
      }
    });
  };
  imports_.add(*audio, source->name() + " Copy", source->tag(),
               [copySettings, done = std::move(done)](const std::exception_ptr& error, WaveId copy) {
                 if (!error) copySettings(copy);
                 done(error);
               });
}

void RolandLibrary::deleteWave(WaveId id) {
  const Wave* found = wave(id);
  if (!found || found->isFactory()) return;
  const Wave removed = *found;
  card_.waves.erase(card_.waves.begin() + (found - card_.waves.data()));
  card_.maybeFree = std::min(card_.maybeFree, id);
  // A pending sample leaves no trace, unless a save has begun to write its files: then they may be on the card.
  const bool isOnCard = !removed.isPending || card_.begunWaves.contains(id);
  card_.begunWaves.erase(id);
  const auto staged = card_.stagedAudioFiles.find(id);
  if (removed.isPending && staged != card_.stagedAudioFiles.end()) {
    if (!staging_.inUse().contains(staged->second)) staging_.remove(staged->second);
    card_.stagedAudioFiles.erase(staged);
  }
  card_.waveDocs.erase(id);
  lives_.renew(RecordLives::Kind::wave, id);
  if (isOnCard) {
    card_.deletedWaves.emplace(lives_.life(RecordLives::Kind::wave, id), removed);
    card_.pendingDeletions.insert_or_assign(id, removed);
  }
  Q_EMIT published(Property::waves);
  if (isOnCard) Q_EMIT published(Property::pendingDeletions);
}

std::vector<WaveUsage> RolandLibrary::waveUsages(WaveId id) const {
  std::vector<WaveUsage> usages;
  for (const Kit& kit : card_.kits) {
    const std::string name = kit.name();
    for (const Pad& pad : kit.pads()) {
      if (pad.wave() == id) usages.push_back({kit.slot, name, pad.index, false});
      if (pad.subWave() == id) usages.push_back({kit.slot, name, pad.index, true});
    }
  }
  return usages;
}

void RolandLibrary::editWaveLeaf(WaveId id, const elements::IntegerLeaf& leaf, std::int64_t value) {
  edit<WaveRecord>({id}, [&](Wave& wave) { leaf.write(wave.node, value); });
}

void RolandLibrary::setWaveTag(WaveId id, std::int64_t value) {
  editWaveLeaf(id, elements::waveTag, value);
}

void RolandLibrary::setWaveTempo(WaveId id, std::int64_t value) {
  editWaveLeaf(id, elements::waveTempo, value);
}

void RolandLibrary::setWaveBeat(WaveId id, std::int64_t value) {
  editWaveLeaf(id, elements::waveBeat, value);
}

void RolandLibrary::setWaveStart(WaveId id, std::int64_t value) {
  editWaveLeaf(id, elements::waveStart, value);
}

void RolandLibrary::setWaveEnd(WaveId id, std::int64_t value) {
  editWaveLeaf(id, elements::waveEnd, value);
}

void RolandLibrary::setWaveName(WaveId id, const std::string& name) {
  edit<WaveRecord>({id}, [&](Wave& wave) { elements::waveName.write(wave.node, name); });
}

}  // namespace tamboro
