#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "library/contents/CardContent.h"
#include "library/contents/RecordLives.h"
#include "model/TagList.h"

namespace tamboro {

/// The card that is open: what was read of it, and what has been changed since and isn't on it yet. Each load makes a
/// new one. Belongs to the main thread; jobs get copies of what they need.
struct OpenCard {
  std::optional<Path> root;     ///< absent until a card has been opened
  std::string serial;           ///< of the card's volume
  std::uint64_t loadCount = 0;  ///< tells the values of one load from those of another
  KnownFiles known;

  std::vector<Kit> kits;    ///< ascending by slot
  std::vector<Wave> waves;  ///< ascending by id
  std::optional<TagList> tagList;
  KitDocs kitDocs;
  WaveDocs waveDocs;
  std::optional<SpdDocument> tagListDoc;

  std::map<WaveId, Wave> pendingDeletions;
  std::map<RecordLives::Life, Wave> deletedWaves;     ///< all pending deletions: an id can be deleted more than once
  std::map<Slot, std::uint64_t> pendingKitDeletions;  ///< deleted slots, each with the deletion's own number
  StagedFiles stagedAudioFiles;
  std::set<WaveId> begunWaves;  ///< pending samples whose files a save has begun to write
  WaveId maybeFree = 0;         ///< the user's ids below it are all taken

  OpenCard() = default;
  /// The card as read by load number `load`.
  OpenCard(Path where, std::string volume, CardContent content, std::uint64_t load);

  /// Null where there is none; lost with the next change of the records.
  const Kit* kit(Slot slot) const;
  Kit* kit(Slot slot);
  const Wave* wave(WaveId id) const;
  Wave* wave(WaveId id);
  /// Puts a record of a new key in its place.
  void insert(Kit kit);
  void insert(Wave wave);

  bool hasUnsavedChanges() const;
  /// Tells one card from another: its serial number, or what it holds where it has none.
  std::string identity() const { return serial.empty() ? known.fingerprint() : serial; }
  /// Where a sample's audio lies, staged or on the card; nothing where it names none. Whether it exists isn't asked.
  std::optional<Path> audioFile(const Wave& wave) const;
  /// Whether a new record may have its file there, relative to the root: nothing answers to the name on the card, or
  /// what does is ours. `files` isn't rooted. A card that doesn't answer has nothing to lose.
  bool isFree(const FileSystem& files, const Path& file) const;
};

}  // namespace tamboro
