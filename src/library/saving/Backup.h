#pragma once

#include "platform/FileSystem.h"

namespace tamboro {

/// Replaces `destination` by a copy of the card's KIT, WAVE/PRM and SYSTEM; audio is not copied. `card` is rooted in
/// `root`, so that no other card that is mounted there meanwhile gets into the copy. A link to a file is copied as that
/// file, a link to a folder below the three and anything else is left out. A destination that is the root, lies in it
/// or holds it (links resolved, case ignored) is refused before anything is removed. Throws FileError; the backup
/// before is then whole in its place or, behind a cut between two renames, beside it with ".tamboro-old-" before its
/// name. Runs on the save's job, before the save's first change to the card.
void backup(const FileSystem& card, FileSystem& files, const Path& root, const Path& destination);

}  // namespace tamboro
