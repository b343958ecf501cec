#include "library/contents/OpenCard.h"

#include <algorithm>
#include <utility>

#include "library/CardPaths.h"

namespace tamboro {

OpenCard::OpenCard(Path where, std::string volume, CardContent content, std::uint64_t load)
    : root(std::move(where)),
      serial(std::move(volume)),
      loadCount(load),
      known(std::move(content.known)),
      kits(std::move(content.kits)),
      waves(std::move(content.waves)),
      tagList(TagList{content.tagListDoc.root, false}),
      kitDocs(std::move(content.kitDocs)),
      waveDocs(std::move(content.waveDocs)),
      tagListDoc(std::move(content.tagListDoc)) {}

const Kit* OpenCard::kit(Slot slot) const {
  const auto found = std::ranges::lower_bound(kits, slot, {}, &Kit::slot);
  return found != kits.end() && found->slot == slot ? &*found : nullptr;
}

Kit* OpenCard::kit(Slot slot) {
  return const_cast<Kit*>(std::as_const(*this).kit(slot));
}

const Wave* OpenCard::wave(WaveId id) const {
  const auto found = std::ranges::lower_bound(waves, id, {}, &Wave::id);
  return found != waves.end() && found->id() == id ? &*found : nullptr;
}

Wave* OpenCard::wave(WaveId id) {
  return const_cast<Wave*>(std::as_const(*this).wave(id));
}

void OpenCard::insert(Kit kit) {
  const auto place = std::ranges::upper_bound(kits, kit.slot, {}, &Kit::slot);
  kits.insert(place, std::move(kit));
}

void OpenCard::insert(Wave wave) {
  const auto place = std::ranges::upper_bound(waves, wave.id(), {}, &Wave::id);
  waves.insert(place, std::move(wave));
}

bool OpenCard::hasUnsavedChanges() const {
  const auto isDirty = [](const auto& record) { return record.isDirty; };
  return std::ranges::any_of(kits, isDirty) || std::ranges::any_of(waves, isDirty) || (tagList && tagList->isDirty) ||
         !pendingDeletions.empty() || !pendingKitDeletions.empty();
}

std::optional<Path> OpenCard::audioFile(const Wave& wave) const {
  if (wave.isPending) {
    const auto staged = stagedAudioFiles.find(wave.id());
    return staged == stagedAudioFiles.end() ? std::nullopt : std::optional(staged->second);
  }
  const auto audio = cardpaths::audioFile(wave);
  if (!root || !audio) return std::nullopt;
  return *root / *audio;
}

/// Names in capitals are asked for, too: where they are other files they would be the same on the instrument's own
/// volume.
bool OpenCard::isFree(const FileSystem& files, const Path& file) const {
  if (known.isKnown(file)) return true;
  std::string capitals = file.filename().native();
  std::ranges::transform(capitals, capitals.begin(),
                         [](char c) { return c >= 'a' && c <= 'z' ? char(c - 'a' + 'A') : c; });
  try {
    for (const Path& name : {file.filename(), Path(capitals)}) {
      if (files.entryStatus(*root / file.parent_path() / name).kind != FileKind::none) return false;
    }
  } catch (const FileError&) {
    // Before a save writes there the card is asked again.
  }
  return true;
}

}  // namespace tamboro
