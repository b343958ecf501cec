#pragma once

#include <map>
#include <span>
#include <vector>

#include "library/saving/SavePlan.h"

namespace tamboro {

/// A share of a plan that the card writer carries out in one pass: few enough files to hold them all open, and no more
/// than the card has room for.
struct SaveBatch {
  std::vector<Path> newFolders;         ///< those of the plan that don't exist yet, parents before children
  std::span<const PlannedFile> files;   ///< into the plan
  std::map<Path, std::size_t> entries;  ///< by folder, what the new names in it take on FAT; see `Placeholders`
};

/// FAT: the entries of a folder that a name of so many bytes takes, one and one more for every 13 characters.
constexpr std::size_t folderEntries(std::size_t nameSize) {
  return 2 + (nameSize - 1) / 13;
}

/// What a new folder has room for from the start, since only folders in place are at risk when they grow: the parameter
/// files of a bank with its audio under names of some length.
constexpr std::size_t newFolderEntries = 400;

/// Names that the writer puts into a folder for a moment, so that it grows before the new names come.
struct Placeholders {
  static constexpr std::size_t nameSize = 130;
  static constexpr std::size_t entries = folderEntries(nameSize);
  /// How many make room for so many entries. A quarter is for gaps that a new name doesn't fill.
  static constexpr std::size_t count(std::size_t newEntries) { return 1 + newEntries / (entries - entries / 4); }
};

/// Cuts a plan into batches, in its order, and makes sure before the first change that it can be carried out: throws
/// FileError where the card has too little room, a target is something else than a file, or a source is missing.
///
/// A batch needs room for all its new files beside the old ones, in whole clusters. What a removal or an earlier batch
/// frees counts as room: it is free by then, and a user makes room on a full card by deleting samples. Should the card
/// run full all the same, the writer's steps keep every file whole.
std::vector<SaveBatch> cutIntoBatches(const FileSystem& card, const FileSystem& files, const SavePlan& plan);

}  // namespace tamboro
