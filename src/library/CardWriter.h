#pragma once

#include <atomic>

#include "library/SavePlan.h"

namespace tamboro {

/// How far a save is; written by its job, read by whoever shows it, on any thread.
struct SaveProgress {
  std::atomic<std::size_t> done = 0;   ///< files written
  std::atomic<std::size_t> total = 0;  ///< files to write; 0 until that is known
};

/// Carries out a plan on a card that can be pulled out at any moment, so that each file on it stays whole, old or new.
/// `card` is rooted in the card; `files` reads the sources of planned files. The order of its steps was found by
/// replaying cut saves on FAT volumes and must not be changed without doing that again. Throws FileError; then each
/// file is still whole, old or new.
void writeToCard(FileSystem& card, const FileSystem& files, const SavePlan& plan, SaveProgress* progress = nullptr);

}  // namespace tamboro
