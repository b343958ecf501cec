#pragma once

#include <QByteArray>
#include <optional>

#include "platform/FileSystem.h"

namespace tamboro {

/// What the program remembers of a chosen folder: its path as bytes. Absent for an empty path.
std::optional<QByteArray> makeBookmark(const Path& folder);
/// The folder again; absent where it is gone or can't be entered.
std::optional<Path> resolveBookmark(const FileSystem& files, const QByteArray& bookmark);

}  // namespace tamboro
