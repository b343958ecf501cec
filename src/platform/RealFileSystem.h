#pragma once

#include "platform/FileSystem.h"

namespace tamboro {

/// The computer's own file system. Relative paths start at the process's working folder.
std::unique_ptr<FileSystem> makeRealFileSystem();

}  // namespace tamboro
