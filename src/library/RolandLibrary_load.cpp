#include <algorithm>
#include <array>

#include "library/CardReader.h"
#include "library/LibraryError.h"
#include "library/RolandLibrary.h"
#include "platform/FolderBookmark.h"

namespace tamboro {
namespace {

FileKind kindOf(const FileSystem& files, const Path& path) {
  try {
    return files.status(path).kind;
  } catch (const FileError&) {
    return FileKind::none;
  }
}

bool isCardRoot(const FileSystem& files, const Path& folder) {
  static const std::array<const char*, 3> parts{"KIT", "WAVE", "SYSTEM"};
  return std::all_of(parts.begin(), parts.end(),
                     [&](const char* part) { return kindOf(files, folder / part) != FileKind::none; });
}

std::vector<Path> entries(const FileSystem& files, const Path& folder) {
  std::vector<Path> paths;
  try {
    for (const std::string& name : files.list(folder))
      paths.push_back(folder / name);
  } catch (const FileError&) {
    // What can't be listed holds no card.
  }
  return paths;
}

}  // namespace

/// The search reaches two levels below the chosen folder, so that a volume, its Roland folder or a folder that holds a
/// copy of a volume all open the card.
std::optional<Path> RolandLibrary::resolveRoot(const Path& location) const {
  const FileSystem& files = services_.files;
  for (const Path& candidate : {location, location / "SPD-SX", location / "Roland" / "SPD-SX"}) {
    if (isCardRoot(files, candidate)) return candidate;
  }
  for (const Path& entry : entries(files, location)) {
    if (kindOf(files, entry) != FileKind::folder) continue;
    if (isCardRoot(files, entry)) return entry;
    for (const Path& below : entries(files, entry)) {
      if (isCardRoot(files, below)) return below;
    }
  }
  return std::nullopt;
}

void RolandLibrary::load(const Path& location) {
  const auto root = resolveRoot(location);
  if (!root) throw LibraryError(LibraryError::Case::rootNotFound);
  const Path resolvedRoot = services_.files.resolved(*root);
  // A card that is being written would be read half old, half new.
  if (running_ && services_.files.resolved(running_->snapshot.root) == resolvedRoot) services_.jobs.waitForAll();
  const auto card = services_.files.rooted(*root);
  const VolumeIdentity volume = card->volumeIdentity(".");
  CardContent content = readCard(*card);

  rootURL_ = *root;
  volume_ = volume;
  kits_ = std::move(content.kits);
  waves_ = std::move(content.waves);
  tagList_ = TagList{content.tagListDoc.root, false};
  kitDocs_ = std::move(content.kitDocs);
  waveDocs_ = std::move(content.waveDocs);
  tagListDoc_ = std::move(content.tagListDoc);
  pendingDeletions_.clear();
  deletedWaves_.clear();
  pendingKitDeletions_.clear();
  stagedAudioFiles_.clear();
  maybeFree_ = 0;
  begunWaves_.clear();
  lives_.openCard(volume_, resolvedRoot);
  ++loadCount_;
  rootPath_ = QString::fromLocal8Bit(root->native().c_str());
  isLoaded_ = true;
  lastError_.reset();
  for (const Property property : {Property::kits, Property::waves, Property::tagList, Property::pendingDeletions,
                                  Property::rootPath, Property::isLoaded, Property::lastError}) {
    Q_EMIT published(property);
  }
}

void RolandLibrary::tryLoad(const Path& location) {
  try {
    load(location);
  } catch (const std::exception&) {
    lastError_ = errorText(std::current_exception());
    Q_EMIT published(Property::lastError);
  }
}

void RolandLibrary::chooseRoot(std::function<void()> failed) {
  const FolderRequest request{QStringLiteral("Choose"),
                              QStringLiteral("Choose the SPD-SX volume (or the Roland/SPD-SX folder)")};
  services_.folderPanel.chooseFolder(request, [this, failed = std::move(failed)](const std::optional<Path>& location) {
    if (!location) return;
    // Before the load: a chosen folder that fails to open is still the one to try at the next start.
    if (const auto bookmark = makeBookmark(*location)) services_.defaults.setBytes(bookmarkKey, *bookmark);
    tryLoad(*location);
    if (lastError_ && failed) failed();
  });
}

void RolandLibrary::restoreFromBookmark() {
  const auto bookmark = services_.defaults.bytes(bookmarkKey);
  if (!bookmark) return;
  if (const auto location = resolveBookmark(services_.files, *bookmark)) tryLoad(*location);
}

void RolandLibrary::openDroppedFolder(const Path& location) {
  tryLoad(location);
}

}  // namespace tamboro
