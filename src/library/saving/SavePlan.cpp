#include "library/saving/SavePlan.h"

#include <algorithm>
#include <map>
#include <span>

#include "card/SpdParseError.h"
#include "library/CardPaths.h"
#include "library/FileCopy.h"
#include "model/WaveListIndex.h"
#include "text/Unicode.h"

namespace tamboro {
namespace {

// Samples that become visible together: their audio, then their parameters. Small enough that a save of thousands that
// is cut leaves whole samples and not thousands of sounds that nothing names.
constexpr std::size_t samplesPerGroup = 200;
// Deleted audio that is held open at a time; a process may have no more than 1024 files open.
constexpr std::size_t audioHeld = 200;

SpdDocument documentOf(const SpdNode& root, const SpdDocument* stored, LineSeparator separator, const char* trailing) {
  if (stored != nullptr) return {root, stored->lineSeparator, stored->trailingBytes};
  return {root, separator, trailing};
}

template<typename Docs>
const SpdDocument* find(const Docs& docs, std::int64_t key) {
  const auto found = docs.find(key);
  return found == docs.end() ? nullptr : &found->second;
}

// A sample that was deleted before a save of ours came to its file: what stands there now is somebody else's.
bool isUnbegun(const SaveSnapshot& snapshot, const Wave& deleted, const Path& file) {
  return deleted.isPending && !snapshot.known.isKnown(file);
}

// What the remaining samples need below WAVE/DATA, as file keys.
std::set<std::string> audioInUse(std::span<const Wave> waves) {
  std::set<std::string> keys;
  for (const Wave& wave : waves) {
    if (const auto file = cardpaths::audioFile(wave)) keys.insert(fileKey(*file));
    if (!wave.isPending) continue;
    if (const auto target = cardpaths::audioTarget(wave)) keys.insert(fileKey(*target));
  }
  return keys;
}

// A deleted sample's audio, held open: as long as it is, the system tells it by one number under all its names.
struct DeletedAudio {
  Path file;
  std::uint64_t deletion;
  std::unique_ptr<OpenFile> held;
  FileIdentity identity;
};

DeletedAudio lookAt(const FileSystem& card, const Path& file, std::uint64_t deletion) {
  DeletedAudio audio{file, deletion, nullptr, {}};
  try {
    if (card.entryStatus(file).kind != FileKind::regular) return audio;
    audio.held = card.open(file);
    audio.identity = card.entryStatus(file).identity;
  } catch (const FileError&) {
    // Its removal fails, too, and says so.
  }
  return audio;
}

// Whether a failure to look at a path tells that no file can stand there: paths of audio are free text.
bool isNoPath(const FileError& error) {
  return error.code() == std::errc::filename_too_long || error.code() == std::errc::too_many_symbolic_link_levels ||
         error.code() == std::errc::invalid_argument || error.code() == std::errc::illegal_byte_sequence;
}

// The files that the remaining samples name, under whatever name that is.
std::set<FileIdentity> identitiesInUse(const FileSystem& card, std::span<const Wave> waves) {
  std::set<FileIdentity> identities;
  for (const Wave& wave : waves) {
    const auto file = wave.isPending ? std::nullopt : cardpaths::audioFile(wave);
    if (!file) continue;
    try {
      const FileStatus status = card.status(*file);
      if (status.kind == FileKind::regular) identities.insert(status.identity);
    } catch (const FileError& error) {
      if (!isNoPath(error)) throw;  // its text was compared all the same
    }
  }
  return identities;
}

// A link among the folders on the way can lead to files that aren't the card's.
bool isOnCard(const FileSystem& card, const Path& file) {
  try {
    return isInside(card.resolved(folderOf(file)), card.resolved({}));
  } catch (const FileError& error) {
    if (isNoPath(error)) return false;
    throw;
  }
}

// A folder that isn't there holds nothing; one that can't be listed may hold what is to be found.
std::vector<std::string> listedIfThere(const FileSystem& card, const Path& folder) {
  return card.status(folder).kind == FileKind::folder ? card.list(folder) : std::vector<std::string>();
}

// The audio of samples in these banks that came to the card behind the load, or that the load passes over. A bank that
// isn't there has none.
std::set<std::string> audioOfUnreadSamples(const SaveSnapshot& snapshot, const FileSystem& card,
                                           const std::set<std::int64_t>& banks) {
  std::set<std::string> keys;
  std::string bytes;
  for (const std::int64_t bank : banks) {
    const Path folder = cardpaths::waveParameterFolder(bank);
    for (const std::string& name : listedIfThere(card, folder)) {
      if (!cardpaths::isDocument(Path(lowercased(name))) || snapshot.known.isKnown(folder / name)) continue;
      if (card.entryStatus(folder / name).kind != FileKind::regular) continue;
      card.read(folder / name, bytes);
      try {
        const auto file = cardpaths::audioFile({bank, 0, SpdDocument::parse(bytes).root, false, false});
        if (file) keys.insert(fileKey(*file));
      } catch (const SpdParseError&) {
        // Names no audio.
      }
    }
  }
  return keys;
}

// Where it can't be told whose a deleted sample's audio is, the sample stays as a whole and its deletion has failed.
void addAudioRemovals(const SaveSnapshot& snapshot, const FileSystem& card, const std::set<std::int64_t>& banks,
                      SavePlan& plan, ExportResult& result) {
  std::set<std::string> inUse = audioInUse(snapshot.waves);
  inUse.merge(audioOfUnreadSamples(snapshot, card, banks));
  const auto leave = [&](std::uint64_t deletion) {
    result.failedDeletions.insert(deletion);
    if (!result.deletionError) result.deletionError = std::current_exception();
  };
  std::vector<DeletedAudio> deleted;
  const auto addUnused = [&] {
    const bool anyThere = std::ranges::any_of(deleted, [](const DeletedAudio& audio) { return audio.held != nullptr; });
    try {
      const auto identities = anyThere ? identitiesInUse(card, snapshot.waves) : std::set<FileIdentity>();
      for (const DeletedAudio& audio : deleted) {
        if (!audio.held || !identities.contains(audio.identity)) plan.removals.push_back({audio.file, audio.deletion});
      }
    } catch (const FileError&) {
      for (const DeletedAudio& audio : deleted)
        leave(audio.deletion);
    }
    deleted.clear();
  };
  for (const auto& [number, wave] : snapshot.deletions) {
    const auto file = cardpaths::audioFile(wave);
    if (!file || inUse.contains(fileKey(*file)) || isUnbegun(snapshot, wave, *file)) continue;
    try {
      if (!isOnCard(card, *file)) continue;
    } catch (const FileError&) {
      leave(number);
      continue;
    }
    deleted.push_back(lookAt(card, *file, number));
    if (deleted.size() == audioHeld) addUnused();
  }
  addUnused();
  std::erase_if(plan.removals,
                [&](const PlannedRemoval& removal) { return result.failedDeletions.contains(removal.deletion); });
}

using BankAndNumber = std::pair<std::int64_t, std::int64_t>;

// The files that a load takes for samples of these banks, besides those under the name that a save writes.
std::multimap<BankAndNumber, Path> filesUnderOtherNames(const FileSystem& card, const std::set<std::int64_t>& banks) {
  std::multimap<BankAndNumber, Path> files;
  for (const std::string& folder : listedIfThere(card, cardpaths::waveParameterRoot())) {
    const auto bank = cardpaths::bankOfFolder(folder);
    if (!bank || !banks.contains(*bank)) continue;
    for (const std::string& name : listedIfThere(card, cardpaths::waveParameterRoot() / folder)) {
      const auto number = cardpaths::numberOfWaveFile(name);
      Path file = cardpaths::waveParameterRoot() / folder / name;
      if (number && file != cardpaths::waveParameterFile(*bank, *number)) {
        files.emplace(BankAndNumber{*bank, *number}, std::move(file));
      }
    }
  }
  return files;
}

void addSampleRemovals(const SaveSnapshot& snapshot, const FileSystem& card, SavePlan& plan, ExportResult& result) {
  if (snapshot.deletions.empty()) return;
  std::set<std::int64_t> banks;
  for (const auto& [number, wave] : snapshot.deletions)
    banks.insert(wave.bank);
  const auto others = filesUnderOtherNames(card, banks);
  std::set<std::int64_t> onCard;
  for (const Wave& wave : snapshot.waves) {
    if (!wave.isPending) onCard.insert(wave.id());
  }
  for (const auto& [number, wave] : snapshot.deletions) {
    // A sample that has got the id since and is on the card has its own parameters there: this deletion failed before.
    // Another one of the same id that was read with it has its own under another name.
    const bool idIsInUse = onCard.contains(wave.id());
    const Path file = cardpaths::waveParameterFile(wave.bank, wave.fileNumber);
    if ((!idIsInUse || snapshot.twinDeletions.contains(number)) && !isUnbegun(snapshot, wave, file)) {
      plan.removals.push_back({file, number, true});
    }
    if (idIsInUse || wave.isPending) continue;
    const auto [first, end] = others.equal_range({wave.bank, wave.fileNumber});
    for (auto other = first; other != end; ++other)
      plan.removals.push_back({other->second, number, true});
  }
  addAudioRemovals(snapshot, card, banks, plan, result);
}

void addKitRemovals(const SaveSnapshot& snapshot, const FileSystem& card, SavePlan& plan) {
  if (snapshot.kitDeletions.empty() || card.status(cardpaths::kitFolder()).kind == FileKind::none) return;
  std::set<Path> inUse;
  for (const std::int64_t slot : snapshot.kitSlots)
    inUse.insert(cardpaths::kitFile(slot));
  for (const std::string& name : card.list(cardpaths::kitFolder())) {
    const std::optional<std::int64_t> slot = cardpaths::slotOfKitFile(name);
    const auto deletion = slot ? snapshot.kitDeletions.find(*slot) : snapshot.kitDeletions.end();
    if (deletion == snapshot.kitDeletions.end()) continue;
    Path file = cardpaths::kitFolder() / name;
    // A kit that no save had come to has no file: what has its name now is somebody else's.
    const bool isUnread = file == cardpaths::kitFile(*slot) && !snapshot.known.isKnown(file);
    if (inUse.contains(file) || isUnread) continue;
    plan.removals.push_back({std::move(file), deletion->second, true});
  }
}

void addFolders(const SaveSnapshot& snapshot, SavePlan& plan) {
  std::set<Path> folders;
  for (const Wave& wave : snapshot.dirtyWaves) {
    for (Path folder : {cardpaths::waveParameterFolder(wave.bank), cardpaths::waveDataFolder(wave.bank)}) {
      for (; !folder.empty() && folders.insert(folder).second; folder = folder.parent_path()) {
      }
    }
  }
  plan.folders.assign(folders.begin(), folders.end());
  const auto depth = [](const Path& folder) { return std::distance(folder.begin(), folder.end()); };
  std::ranges::stable_sort(plan.folders, {}, depth);
}

void addAudio(const SaveSnapshot& snapshot, const Wave& wave, SavePlan& plan) {
  if (!wave.isPending) return;
  const auto staged = snapshot.stagedAudioFiles.find(wave.id());
  const std::optional<Path> target = cardpaths::audioTarget(wave);
  if (staged != snapshot.stagedAudioFiles.end() && target)
    plan.files.push_back({*target, staged->second, FileGroup::audio});
}

// A name such as KICKDR~1.WAV comes before the long ones: FAT gives a long name a short one of that shape that nothing
// has yet, and a name that comes behind it would find the long one's file under its own.
std::vector<Wave> shortNamesFirst(std::vector<Wave> waves) {
  std::stable_partition(waves.begin(), waves.end(), [](const Wave& wave) {
    const std::optional<Path> target = cardpaths::audioTarget(wave);
    return wave.isPending && target && target->filename().native().find('~') != std::string::npos;
  });
  return waves;
}

void addSamples(const SaveSnapshot& snapshot, SavePlan& plan, ExportResult& result) {
  const std::vector<Wave> waves = shortNamesFirst(snapshot.dirtyWaves);
  std::span<const Wave> rest = waves;
  while (!rest.empty()) {
    const auto group = rest.first(std::min(samplesPerGroup, rest.size()));
    rest = rest.subspan(group.size());
    for (const Wave& wave : group)
      addAudio(snapshot, wave, plan);
    for (const Wave& wave : group) {
      SpdDocument document = waveDocument(wave, find(snapshot.waveDocs, wave.id()));
      const Path file = cardpaths::waveParameterFile(wave.bank, wave.fileNumber);
      plan.files.push_back({file, document.serialize(), FileGroup::parameters});
      result.updatedWaveDocs.insert_or_assign(wave.id(), std::move(document));
    }
  }
}

void addKits(const SaveSnapshot& snapshot, SavePlan& plan, ExportResult& result) {
  for (const Kit& kit : snapshot.dirtyKits) {
    SpdDocument document = kitDocument(kit, find(snapshot.kitDocs, kit.slot));
    plan.files.push_back({cardpaths::kitFile(kit.slot), document.serialize(), FileGroup::kits});
    result.updatedKitDocs.insert_or_assign(kit.slot, std::move(document));
  }
}

void addTagList(const SaveSnapshot& snapshot, SavePlan& plan, ExportResult& result) {
  if (!snapshot.tagList || !snapshot.tagList->isDirty) return;
  SpdDocument document = tagListDocument(*snapshot.tagList, snapshot.tagListDoc ? &*snapshot.tagListDoc : nullptr);
  plan.files.push_back({cardpaths::tagListFile(), document.serialize(), FileGroup::tagList});
  result.updatedTagListDoc = std::move(document);
}

void addIndexes(const SaveSnapshot& snapshot, SavePlan& plan) {
  const WaveListIndexes indexes = buildWaveListIndexes(snapshot.waves, static_cast<int>(snapshot.tagCount));
  plan.files.push_back({cardpaths::nameIndexFile(), indexes.byName.serialize(), FileGroup::lists});
  plan.files.push_back({cardpaths::tagNumberIndexFile(), indexes.byTagNumber.serialize(), FileGroup::lists});
  plan.files.push_back({cardpaths::tagNameIndexFile(), indexes.byTagName.serialize(), FileGroup::lists});
}

}  // namespace

SpdDocument waveDocument(const Wave& wave, const SpdDocument* stored) {
  return documentOf(wave.node, stored, LineSeparator::lf, "\n");
}

SpdDocument kitDocument(const Kit& kit, const SpdDocument* stored) {
  return documentOf(kit.node, stored, LineSeparator::lf, "");
}

SpdDocument tagListDocument(const TagList& tagList, const SpdDocument* stored) {
  return documentOf(tagList.node, stored, LineSeparator::crlf, "\r\n");
}

SavePlan makeSavePlan(const SaveSnapshot& snapshot, const FileSystem& card, ExportResult& result) {
  SavePlan plan;
  addSampleRemovals(snapshot, card, plan, result);
  addKitRemovals(snapshot, card, plan);
  addFolders(snapshot, plan);
  addSamples(snapshot, plan, result);
  addKits(snapshot, plan, result);
  addTagList(snapshot, plan, result);
  addIndexes(snapshot, plan);
  return plan;
}

}  // namespace tamboro
