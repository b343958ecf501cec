#pragma once

#include <QMimeData>
#include <filesystem>
#include <limits>
#include <optional>
#include <vector>

namespace tamboro {

/// The entries of a dragged `text/uri-list` in order, the first `most` of them; nothing stands for an entry that is no
/// place on this computer. The disk isn't asked.
std::vector<std::optional<std::filesystem::path>> draggedPaths(
    const QMimeData& data, std::size_t most = std::numeric_limits<std::size_t>::max());

}  // namespace tamboro
