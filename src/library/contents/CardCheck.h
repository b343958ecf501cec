#pragma once

#include <string>

#include "library/contents/KnownFiles.h"

/// What is made sure of before the program opens a card, changes it or copies anything of it.
namespace tamboro {

/// Throws OtherCard (no such device) where the card under `root` is not the one that `serial` and `known` were taken
/// from: by the serial number of its volume, where it has none by its content. Then it is the same card as long as of
/// some files spread over it half are as they were last known: the instrument may have changed a few.
void requireSameCard(const FileSystem& files, const Path& root, const std::string& serial, const KnownFiles& known);

/// Throws CardConflict where one of these folders, or one in WAVE/PRM or WAVE/DATA, is a link that leads out of the
/// card: what is done there would be done to somebody else's files. `card` is rooted in the card.
void requireFoldersInside(const FileSystem& card);

}  // namespace tamboro
