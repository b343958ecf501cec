#pragma once

#include "library/SaveSnapshot.h"

namespace tamboro {

struct SaveProgress;

/// The whole save, off the main thread: makes sure that the card under the root is the one that was loaded, backs up
/// (a failure is dropped), plans and writes. Throws FileError; the store then changes nothing.
ExportResult saveJob(const SaveSnapshot& snapshot, FileSystem& files, SaveProgress* progress = nullptr);

/// Throws FileError where the volume under `root` is not the one it was.
void requireSameVolume(const FileSystem& files, const Path& root, const VolumeIdentity& volume);

}  // namespace tamboro
