#pragma once

#include "library/SavePlan.h"

namespace tamboro {

/// Carries out a plan on a card that can be pulled out at any moment, so that each file on it stays whole, old or new.
/// `card` is rooted in the card; `files` reads the sources of planned files. The order of its steps was found by
/// replaying cut saves on FAT volumes and must not be changed without doing that again. Throws FileError; then each
/// file is still whole, old or new.
void writeToCard(FileSystem& card, const FileSystem& files, const SavePlan& plan);

}  // namespace tamboro
