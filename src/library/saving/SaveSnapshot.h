#pragma once

#include <exception>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <vector>

#include "library/contents/CardContent.h"
#include "model/TagList.h"

namespace tamboro {

/// What a save works on, taken from the store on the main thread: plain values that no later edit reaches.
struct SaveSnapshot {
  Path root;
  std::string serial;                       ///< of the card's volume when it was loaded
  KnownFiles known;                         ///< what a save may replace and remove
  bool replacesChanged = false;             ///< the user wants his changes over those of others
  std::map<std::uint64_t, Wave> deletions;  ///< samples to take off the card, by the deletion's own number
  std::set<std::uint64_t> twinDeletions;    ///< those whose id another sample has had since the card was read
  std::map<std::int64_t, std::uint64_t> kitDeletions;  ///< slots of deleted kits, each with the deletion's own number
  std::vector<Wave> dirtyWaves;
  std::vector<Kit> dirtyKits;
  std::optional<TagList> tagList;
  std::vector<Wave> waves;          ///< all samples, for the indexes
  std::set<std::int64_t> kitSlots;  ///< of all kits
  std::size_t tagCount = 0;
  WaveDocs waveDocs;  ///< of the dirty samples
  KitDocs kitDocs;    ///< of the dirty kits
  std::optional<SpdDocument> tagListDoc;
  StagedFiles stagedAudioFiles;
  bool backupBeforeSave = false;
  Path backupDestination;
};

/// What a save hands back when everything is written: the documents as written.
struct ExportResult {
  std::set<std::uint64_t> failedDeletions;  ///< by number; they stay pending
  std::exception_ptr deletionError;         ///< why the first of them failed
  WaveDocs updatedWaveDocs;
  KitDocs updatedKitDocs;
  std::optional<SpdDocument> updatedTagListDoc;
};

/// A kit export's values; see `exportKitJob`.
struct KitExport {
  Path root;
  std::string serial;
  KnownFiles known;
  Path destination;
  Kit kit;
  std::optional<SpdDocument> kitDoc;
  std::vector<Wave> waves;  ///< the samples the kit's pads use, in order
  WaveDocs waveDocs;
  StagedFiles stagedAudioFiles;
};

}  // namespace tamboro
