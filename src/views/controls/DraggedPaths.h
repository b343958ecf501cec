#pragma once

#include <QMimeData>
#include <limits>
#include <optional>
#include <vector>

#include "library/store/RolandLibrary.h"

namespace tamboro {

/// The entries of a dragged `text/uri-list` in order, the first `most` of them; nothing stands for an entry that is no
/// place on this computer. The disk isn't asked.
std::vector<std::optional<Path>> draggedPaths(const QMimeData& data,
                                              std::size_t most = std::numeric_limits<std::size_t>::max());

/// Links are followed; what can't be asked is none.
bool isFolderHere(const FileSystem& files, const Path& path);

/// The folder that a drag carries: its first item, when that is a folder on this computer. Further items don't count.
std::optional<Path> droppedFolder(const QMimeData& data, const FileSystem& files);

}  // namespace tamboro
