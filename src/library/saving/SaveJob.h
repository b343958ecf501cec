#pragma once

#include <utility>
#include <vector>

#include "library/saving/SaveProgress.h"
#include "library/saving/SaveSnapshot.h"

namespace tamboro {

/// What a save does to the card's parameter files, and to audio as `KnownFiles::anyContent`. Where the save fails half
/// way, what it may have put in place; then the card holds some of the removals.
struct SaveAttempt {
  std::vector<std::pair<Path, ContentHash>> written;
  std::vector<std::pair<Path, std::uint64_t>> removed;  ///< with the number of the deletion
};

/// The whole save, off the main thread: makes sure that the card under the root is the one that was loaded and that
/// nothing is replaced that isn't ours, backs up (a failure is dropped), plans and writes. `attempt` is filled before
/// the first change. Throws FileError or CardConflict; the store then keeps all that is unsaved.
ExportResult saveJob(const SaveSnapshot& snapshot, FileSystem& files, SaveAttempt& attempt,
                     SaveProgress* progress = nullptr);

}  // namespace tamboro
