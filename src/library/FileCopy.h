#pragma once

#include <functional>
#include <string>

#include "platform/FileSystem.h"

/// What the jobs that put files in place have in common. Everything throws FileError.
namespace tamboro {

/// The folder of a relative path; "." where it has none.
Path folderOf(const Path& path);
/// Whether a resolved path is the resolved folder or lies in it.
bool isInside(const Path& place, const Path& folder);
/// Equal keys: on a FAT volume the two paths may be one file. Case, canonical form and points and blanks at the end of
/// a name don't count.
std::string fileKey(const Path& path);
/// The names in a folder; none where it can't be listed.
std::vector<std::string> listedOrNone(const FileSystem& files, const Path& folder);
/// The status of a file to be copied, a link followed. Throws for anything but a regular file.
FileStatus sourceStatus(const FileSystem& files, const Path& source);
/// The status of what a new file is to replace; kind `none` where nothing stands. Throws for anything but a regular
/// file: a folder, a link or a device is never replaced.
FileStatus targetStatus(const FileSystem& files, const Path& target);
/// For a file left behind by a failure, which is the one to report.
void removeQuietly(FileSystem& files, const Path& file);

enum class Durability { none, synced };

/// Puts a file at `target`, replacing the one that stands there: whole or, if anything fails, not at all. `fill` writes
/// the content. `synced` returns when file and name are on the disk. For ordinary disks; see CardWriter.h for cards.
void replaceFile(FileSystem& files, const Path& target, Durability durability,
                 const std::function<void(OpenFile&)>& fill);

}  // namespace tamboro
