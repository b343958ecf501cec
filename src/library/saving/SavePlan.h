#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "library/saving/SaveSnapshot.h"

namespace tamboro {

/// Each is on the card before the next one is begun; the files of one become visible in any order.
enum class FileGroup : std::uint8_t { audio, parameters, kits, tagList, lists };

/// One file that a save puts on the card: its bytes, or the file (outside the card) whose bytes it takes.
struct PlannedFile {
  Path path;
  std::variant<std::string, Path> content;
  FileGroup group = FileGroup::audio;
};

/// One file that a save takes off the card.
struct PlannedRemoval {
  Path file;
  std::uint64_t deletion;        ///< the number of the deletion it belongs to, as the snapshot tells it
  bool isParameterFile = false;  ///< of a sample or a kit, no audio
};

/// What a save does to the card, as plain values; paths are relative to the root. `CardWriter` carries it out.
struct SavePlan {
  std::vector<PlannedRemoval> removals;  ///< in order; of one deletion none goes behind one that couldn't
  std::vector<Path> folders;             ///< to be there afterwards, parents before children
  std::vector<PlannedFile> files;        ///< a change of group is a barrier
};

/// A record's document as a save or an export writes it: the record's tree with line separator and trailing bytes of
/// the document it was read from, or the defaults of its kind where there is none.
SpdDocument waveDocument(const Wave& wave, const SpdDocument* stored);
SpdDocument kitDocument(const Kit& kit, const SpdDocument* stored);
SpdDocument tagListDocument(const TagList& tagList, const SpdDocument* stored);

/// Makes the plan of a save and, beside it, the result to hand back once it is carried out. `card` is rooted in the
/// card and only read: the files of a deleted kit's slot are found by listing KIT, and whether a deleted sample's audio
/// is that of another one, too, is asked of the files themselves. Throws FileError.
SavePlan makeSavePlan(const SaveSnapshot& snapshot, const FileSystem& card, ExportResult& result);

}  // namespace tamboro
