#include <algorithm>
#include <cstdio>
#include <unordered_set>

#include "library/CardPaths.h"
#include "library/LibraryError.h"
#include "library/imports/StagingJob.h"
#include "library/store/RolandLibrary_edit.h"
#include "text/Unicode.h"

namespace tamboro {
namespace {

std::exception_ptr libraryError(LibraryError::Case which) {
  return std::make_exception_ptr(LibraryError(which));
}

/// What FAT refuses in a name becomes "_": characters it has no place for and a blank or a point at the end.
std::string nameForFat(std::string name) {
  constexpr std::string_view refused = "\"*/:<>?\\|";
  constexpr char del = 0x7F;
  for (char& c : name) {
    const auto code = static_cast<unsigned char>(c);
    if (code < 0x20 || c == del || refused.find(c) != std::string_view::npos) c = '_';
  }
  if (!name.empty() && (name.back() == ' ' || name.back() == '.')) name.back() = '_';
  return name;
}

/// At most so many bytes of UTF-8, and no character cut in two.
std::string beginning(std::string text, std::size_t size) {
  if (text.size() <= size) return text;
  while (size > 0 && (static_cast<unsigned char>(text[size]) & 0xC0) == 0x80)
    --size;
  text.resize(size);
  return text;
}

/// No longer than a file system takes: what is too much goes from the stem's end, and only then from the extension's.
std::string numbered(const Path& stem, int counter, const Path& extension) {
  constexpr std::size_t longestName = 255;
  constexpr std::size_t leastStem = 4;
  char number[16];
  std::snprintf(number, sizeof number, "_%02d", counter);
  std::string end(number);
  end += beginning(extension.native(), longestName - leastStem - end.size());
  return beginning(stem.native(), longestName - end.size()) + end;
}

}  // namespace

void RolandLibrary::importWave(const Path& source, const std::string& name, std::int64_t tag, Completion done) {
  if (!rootURL_) return done(libraryError(LibraryError::Case::notLoaded));
  imports_.push_back({source, name, tag, std::move(done), loadCount_});
  startNextImport();
}

/// One after another: an import chooses its id before the copy and takes it afterwards.
void RolandLibrary::startNextImport() {
  // The caller of a refused import may ask for the next file from its completion: that one waits for this loop.
  if (isStartingImports_) return;
  isStartingImports_ = true;
  while (!isImporting_ && !imports_.empty()) {
    const Import& import = imports_.front();
    if (import.loadCount != loadCount_) {
      endImport(libraryError(LibraryError::Case::notLoaded));
    } else if (const auto place = importPlace(import.source)) {
      startStaging(*place);
    } else {
      endImport(libraryError(LibraryError::Case::noFreeSlot));
    }
  }
  isStartingImports_ = false;
}

void RolandLibrary::endImport(const std::exception_ptr& error) {
  const Import import = std::move(imports_.front());
  imports_.pop_front();
  import.done(error);
}

void RolandLibrary::startStaging(const ImportPlace& place) {
  isImporting_ = true;
  maybeFree_ = waveId(place.bank, place.fileNumber);
  const Path staged = services_.stagingDir / bankFolder(place.bank) / place.fileName;
  auto error = std::make_shared<std::exception_ptr>();
  services_.jobs.start(
      [source = imports_.front().source, staged, error, &files = services_.files] {
        try {
          stageAudio(files, source, staged);
        } catch (...) {
          *error = std::current_exception();
        }
      },
      [this, place, staged, error] {
        const Import& import = imports_.front();
        if (!*error && import.loadCount != loadCount_) {
          removeStaged(staged);
          *error = libraryError(LibraryError::Case::notLoaded);
        }
        if (!*error) addImported(import, place, staged);
        isImporting_ = false;
        endImport(*error);
        startNextImport();
      });
}

void RolandLibrary::holdStaged(std::shared_ptr<const StagedFiles> staged) {
  std::erase_if(stagedReaders_, [](const auto& reader) { return reader.expired(); });
  stagedReaders_.push_back(std::move(staged));
}

/// What jobs under way and waiting imports are still to read: staged audio among it must neither go nor be replaced.
std::set<Path> RolandLibrary::stagedInUse() const {
  std::set<Path> inUse;
  for (const auto& reader : stagedReaders_) {
    const auto staged = reader.lock();
    if (!staged) continue;
    for (const auto& [id, file] : *staged)
      inUse.insert(file);
  }
  for (const Import& import : imports_)
    inUse.insert(import.source);
  return inUse;
}

std::optional<RolandLibrary::ImportPlace> RolandLibrary::importPlace(const Path& source) const {
  WaveId free = std::max(waveId(firstUserBank, 0), maybeFree_);
  auto wave = std::ranges::lower_bound(waves_, free, {}, &Wave::id);
  for (; free <= waveId(lastUserBank, wavesPerBank - 1); ++free) {
    while (wave != waves_.end() && wave->id() < free)
      ++wave;
    if (wave != waves_.end() && wave->id() == free) continue;
    const std::int64_t bank = free / wavesPerBank;
    const std::int64_t number = free % wavesPerBank;
    if (!pendingDeletions_.contains(free) && !isFreeOnCard(cardpaths::waveParameterFile(bank, number))) continue;
    return ImportPlace{bank, number, freeAudioName(bank, nameForFat(source.filename().native()))};
  }
  return std::nullopt;
}

std::string RolandLibrary::freeAudioName(std::int64_t bank, const std::string& wanted) const {
  std::unordered_set<std::string> taken;
  const auto take = [&](std::string_view path) { taken.insert(fileNameKey(path.substr(path.find_last_of('/') + 1))); };
  for (auto wave = std::ranges::lower_bound(waves_, waveId(bank, 0), {}, &Wave::id);
       wave != waves_.end() && wave->id() < waveId(bank + 1, 0); ++wave) {
    if (wave->bank == bank) take(wave->relativeAudioPath());
  }
  const Path stagingFolder = services_.stagingDir / bankFolder(bank);
  for (const Path& file : stagedInUse()) {
    if (file.parent_path() == stagingFolder) take(file.native());
  }
  const Path folder = *rootURL_ / cardpaths::waveDataFolder(bank);
  try {
    // A folder that doesn't exist yet holds no names.
    if (services_.files.status(folder).kind == FileKind::folder)
      for (const std::string& name : services_.files.list(folder))
        take(name);
  } catch (const FileError&) {
    // The save that can't read the folder either says so.
  }
  const auto isTaken = [&](const std::string& candidate) {
    // The folder is asked, too: it can answer to names that a listing doesn't tell.
    return taken.contains(fileNameKey(candidate)) || !isFreeOnCard(cardpaths::waveDataFolder(bank) / candidate);
  };
  const Path name(wanted);
  std::string candidate = wanted;
  for (int counter = 1; isTaken(candidate); ++counter) {
    candidate = numbered(name.stem(), counter, name.extension());
  }
  return candidate;
}

void RolandLibrary::addImported(const Import& import, const ImportPlace& place, const Path& staged) {
  Wave wave{place.bank, place.fileNumber,
            newWaveNode(import.name, import.tag, bankFolder(place.bank) + "/" + place.fileName), true, true};
  const WaveId id = wave.id();
  waves_.insert(
      std::upper_bound(waves_.begin(), waves_.end(), id, [](WaveId wanted, const Wave& w) { return wanted < w.id(); }),
      std::move(wave));
  stagedAudioFiles_.insert_or_assign(id, staged);
  lives_.renew(RecordLives::Kind::wave, id);
  lastImported_ = id;
  Q_EMIT published(Property::waves);
}

void RolandLibrary::duplicateWave(WaveId id, Completion done) {
  const Wave* source = wave(id);
  if (!source) return done(nullptr);
  const auto audio = audioURL(*source);
  if (!audio) return done(libraryError(LibraryError::Case::notLoaded));
  importWave(*audio, source->name() + " Copy", source->tag(),
             [this, original = *source, done = std::move(done)](const std::exception_ptr& error) {
               if (!error) copySettings(original, lastImported_);
               done(error);
             });
}

void RolandLibrary::copySettings(const Wave& original, WaveId copy) {
  edit<WaveRecord>({copy}, [&](Wave& wave) {
    for (const elements::IntegerLeaf& leaf :
         {elements::waveTempo, elements::waveBeat, elements::waveStart, elements::waveEnd}) {
      leaf.write(wave.node, leaf.read(original.node));
    }
  });
}

void RolandLibrary::deleteWave(WaveId id) {
  const Wave* found = wave(id);
  if (!found || found->isFactory()) return;
  const Wave removed = *found;
  waves_.erase(waves_.begin() + (found - waves_.data()));
  maybeFree_ = std::min(maybeFree_, id);
  // A pending sample leaves no trace, unless a save has begun to write its files: then they may be on the card.
  const bool isOnCard = !removed.isPending || begunWaves_.contains(id);
  begunWaves_.erase(id);
  const auto staged = stagedAudioFiles_.find(id);
  if (removed.isPending && staged != stagedAudioFiles_.end()) {
    if (!stagedInUse().contains(staged->second)) removeStaged(staged->second);
    stagedAudioFiles_.erase(staged);
  }
  waveDocs_.erase(id);
  lives_.renew(RecordLives::Kind::wave, id);
  if (isOnCard) {
    deletedWaves_.emplace(lives_.life(RecordLives::Kind::wave, id), removed);
    pendingDeletions_.insert_or_assign(id, removed);
  }
  Q_EMIT published(Property::waves);
  if (isOnCard) Q_EMIT published(Property::pendingDeletions);
}

void RolandLibrary::removeStaged(const Path& staged) {
  try {
    services_.files.removeFile(staged);
  } catch (const FileError&) {
    // A file left in the staging folder does no harm.
  }
}

std::vector<WaveUsage> RolandLibrary::waveUsages(WaveId id) const {
  std::vector<WaveUsage> usages;
  for (const Kit& kit : kits_) {
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
