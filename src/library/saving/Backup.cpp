#include "library/saving/Backup.h"

#include <algorithm>

#include "library/CardPaths.h"
#include "library/FileCopy.h"
#include "text/Unicode.h"

namespace tamboro {
namespace {

// Whether `outer` is `inner` or a folder above it. Where in doubt yes: what a wrong no removes is the card.
bool holds(const Path& outer, const Path& inner) {
  const auto sameName = [](const Path& a, const Path& b) {
    return a == b || fileNameKey(a.native()) == fileNameKey(b.native());
  };
  const auto [rest, unused] = std::mismatch(outer.begin(), outer.end(), inner.begin(), inner.end(), sameName);
  return rest == outer.end();
}

// Absolute and normal, without a slash at the end.
Path plainPath(const FileSystem& files, const Path& path) {
  Path plain = files.resolved(path).lexically_normal();
  if (!plain.has_filename() && plain.has_relative_path()) plain = plain.parent_path();
  return plain;
}

void refuseOverlap(const FileSystem& files, const Path& root, const Path& destination) {
  if (destination.empty()) throw FileError(std::make_error_code(std::errc::no_such_file_or_directory), destination);
  const Path card = plainPath(files, root);
  const Path target = plainPath(files, destination);
  // Where the destination is a link, the link itself goes and the copy takes its place.
  Path place = destination.lexically_normal();
  if (!place.has_filename()) place = place.parent_path();
  place = plainPath(files, folderOf(place)) / place.filename();
  for (const Path& taken : {target, place}) {
    if (holds(taken, card) || holds(card, taken)) {
      throw FileError(std::make_error_code(std::errc::operation_not_permitted), destination);
    }
  }
}

void copyFolder(const FileSystem& card, const Path& source, FileSystem& files, const Path& target) {
  files.makeFolder(target);
  for (const std::string& name : card.list(source)) {
    const Path entry = source / name;
    const FileKind kind = card.status(entry).kind;
    if (kind == FileKind::regular) {
      files.create(target / name)->append(*card.open(entry));
    } else if (kind == FileKind::folder && card.entryStatus(entry).kind == FileKind::folder) {
      copyFolder(card, entry, files, target / name);  // a real folder: links could lead round in a circle
    }
  }
}

void copyParameters(const FileSystem& card, FileSystem& files, const Path& target) {
  makeFolders(files, target);
  for (const Path& folder : {cardpaths::kitFolder(), cardpaths::waveParameterRoot(), cardpaths::systemFolder()}) {
    if (card.status(folder).kind == FileKind::none) continue;
    makeFolders(files, (target / folder).parent_path());
    copyFolder(card, folder, files, target / folder);
  }
}

}  // namespace

// The new one is made beside the one before and takes its place whole: at every moment there is a whole backup.
void backup(const FileSystem& card, FileSystem& files, const Path& root, const Path& destination) {
  refuseOverlap(files, root, destination);
  Path place = destination.lexically_normal();
  if (!place.has_filename()) place = place.parent_path();
  // Under names that nobody gives: "Tamboro Backup.old" may be a copy that the user keeps.
  const Path made = place.parent_path() / (".tamboro-new-" + place.filename().native());
  const Path former = place.parent_path() / (".tamboro-old-" + place.filename().native());
  refuseOverlap(files, root, made);
  refuseOverlap(files, root, former);
  const auto exists = [&](const Path& path) { return files.entryStatus(path).kind != FileKind::none; };

  // What an earlier one left that was cut. Between its two moves the former backup is the only whole one.
  if (!exists(place) && exists(former)) files.rename(former, place);
  for (const Path& leftover : {made, former}) {
    if (exists(leftover)) removeTree(files, leftover);
  }
  copyParameters(card, files, made);
  if (exists(place)) files.rename(place, former);
  files.rename(made, place);
  if (exists(former)) removeTree(files, former);
}

}  // namespace tamboro
