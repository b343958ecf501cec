#include "library/SavePlan.h"

#include <algorithm>
#include <span>

#include "library/CardPaths.h"
#include "library/FileCopy.h"
#include "model/WaveListIndex.h"

namespace tamboro {
namespace {

// Samples that become visible together: their audio, then their parameters. Small enough that a save of thousands that
// is cut leaves whole samples and not thousands of sounds that nothing names.
constexpr std::size_t samplesPerGroup = 200;

SpdDocument documentOf(const SpdNode& root, const SpdDocument* stored, LineSeparator separator, const char* trailing) {
  if (stored != nullptr) return {root, stored->lineSeparator, stored->trailingBytes};
  return {root, separator, trailing};
}

template<typename Docs>
const SpdDocument* find(const Docs& docs, std::int64_t key) {
  const auto found = docs.find(key);
  return found == docs.end() ? nullptr : &found->second;
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

void addSampleRemovals(const SaveSnapshot& snapshot, SavePlan& plan) {
  if (snapshot.deletions.empty()) return;
  for (const auto& [id, wave] : snapshot.deletions) {
    plan.removals.push_back(cardpaths::waveParameterFile(wave.bank, wave.fileNumber));
  }
  const std::set<std::string> inUse = audioInUse(snapshot.waves);
  for (const auto& [id, wave] : snapshot.deletions) {
    const auto file = cardpaths::audioFile(wave);
    if (file && !inUse.contains(fileKey(*file))) plan.removals.push_back(*file);
  }
}

void addKitRemovals(const SaveSnapshot& snapshot, const FileSystem& card, SavePlan& plan) {
  if (snapshot.kitDeletions.empty()) return;
  std::set<Path> replaced;
  for (const Kit& kit : snapshot.dirtyKits)
    replaced.insert(cardpaths::kitFile(kit.slot));
  try {
    for (const std::string& name : card.list(cardpaths::kitFolder())) {
      const std::optional<std::int64_t> slot = cardpaths::slotOfKitFile(name);
      if (!slot || !snapshot.kitDeletions.contains(*slot)) continue;
      Path file = cardpaths::kitFolder() / name;
      if (!replaced.contains(file)) plan.removals.push_back(std::move(file));
    }
  } catch (const FileError&) {
    // As with every removal: what can't be done is passed over.
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

void addSamples(const SaveSnapshot& snapshot, SavePlan& plan, ExportResult& result) {
  std::span<const Wave> rest = snapshot.dirtyWaves;
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
  addSampleRemovals(snapshot, plan);
  addKitRemovals(snapshot, card, plan);
  addFolders(snapshot, plan);
  addSamples(snapshot, plan, result);
  addKits(snapshot, plan, result);
  addTagList(snapshot, plan, result);
  addIndexes(snapshot, plan);
  return plan;
}

}  // namespace tamboro
