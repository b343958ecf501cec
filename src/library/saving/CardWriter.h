#pragma once

#include <exception>
#include <set>

#include "library/saving/SavePlan.h"
#include "library/saving/SaveProgress.h"

namespace tamboro {

/// The numbers of the deletions that couldn't be carried out whole, and why the first couldn't. Nothing that stands
/// there, or something that is no file, is no failure; a link in the place of a parameter file is one.
struct FailedRemovals {
  std::set<std::uint64_t> deletions;
  std::exception_ptr error;
};

/// Carries out a plan on a card that can be pulled out at any moment, so that each file on it stays whole, old or new.
/// `card` is rooted in the card; `files` reads the sources of planned files. The order of its steps was found by
/// replaying cut saves on FAT volumes and must not be changed without doing that again. Throws FileError; then each
/// file is still whole, old or new. A removal that can't be done stops nothing and is told.
FailedRemovals writeToCard(FileSystem& card, const FileSystem& files, const SavePlan& plan,
                           SaveProgress* progress = nullptr);

}  // namespace tamboro
