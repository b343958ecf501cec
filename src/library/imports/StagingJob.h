#pragma once

#include "platform/FileSystem.h"

namespace tamboro {

/// Copies an import's source to its staged place, replacing a file that stands there; makes the folder. Only regular
/// files are taken, a link is followed. Throws FileError and leaves no part of a copy. Runs off the main thread.
void stageAudio(FileSystem& files, const Path& source, const Path& staged);

}  // namespace tamboro
