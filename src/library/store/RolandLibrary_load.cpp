#include <algorithm>
#include <array>

#include "library/CardPaths.h"
#include "library/FileCopy.h"
#include "library/LibraryError.h"
#include "library/contents/CardCheck.h"
#include "library/reading/CardReader.h"
#include "library/store/RolandLibrary.h"
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
  const std::array parts{cardpaths::kitFolder(), cardpaths::waveFolder(), cardpaths::systemFolder()};
  return std::ranges::all_of(parts, [&](const Path& part) { return kindOf(files, folder / part) != FileKind::none; });
}

std::vector<Path> entries(const FileSystem& files, const Path& folder) {
  std::vector<Path> paths;
  for (const std::string& name : listedOrNone(files, folder))  // what can't be listed holds no card
    paths.push_back(folder / name);
  return paths;
}

/// Whether there is a document that could take the place of a damaged one.
bool isWholeIn(const FileSystem& files, const Path& file) {
  try {
    std::string bytes;
    files.read(file, bytes);
    SpdDocument::parse(bytes);
    return true;
  } catch (const std::exception&) {
    return false;
  }
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
  // A card that is being written would be read half old, half new; and a save that was asked for must not find another
  // card open when its turn comes.
  saves_.waitForAll();
  const Path resolvedRoot = services_.files.resolved(*root);
  const auto card = services_.files.rooted(*root);
  requireFoldersInside(*card);
  std::string serial = card->volumeSerial(".");
  CardContent content = readCard(*card);

  state_.leftovers = findLeftovers(*card);
  card_ = OpenCard(*root, std::move(serial), std::move(content), card_.loadCount + 1);
  lives_.openCard(card_.identity(), resolvedRoot);
  state_.rootPath = QString::fromLocal8Bit(root->native().c_str());
  state_.lastError.reset();
  state_.lastErrorDetail.clear();
  imports_.dropWaiting();
  for (const Property property : {Property::kits, Property::waves, Property::tagList, Property::pendingDeletions,
                                  Property::rootPath, Property::isLoaded, Property::lastError}) {
    Q_EMIT published(property);
  }
}

void RolandLibrary::tryLoad(const Path& location) {
  try {
    load(location);
  } catch (const std::exception&) {
    state_.lastError = errorText(std::current_exception());
    state_.lastErrorDetail = detailOf(std::current_exception());
    Q_EMIT published(Property::lastError);
  }
}

QString RolandLibrary::detailOf(const std::exception_ptr& error) const {
  try {
    std::rethrow_exception(error);
  } catch (const DamagedFile& damage) {
    const QString file = QString::fromUtf8(QByteArray::fromStdString(damage.file().native()));
    const QString what = damage.kind() == SpdParseError::Kind::empty ? QStringLiteral("%1 is empty. %2")
                                                                     : QStringLiteral("%1 is damaged. %2");
    return what.arg(file, isWholeIn(services_.files, services_.backupDestination / damage.file())
                              ? QStringLiteral("The backup folder holds a whole copy of it.")
                              : QStringLiteral("The backup folder holds no copy of it."));
  } catch (const std::exception&) {
    return {};
  }
}

void RolandLibrary::readAgain() {
  if (const auto root = card_.root) tryLoad(*root);
}

void RolandLibrary::chooseRoot(std::function<void()> failed) {
  const FolderRequest request{QStringLiteral("Choose"),
                              QStringLiteral("Choose the SPD-SX volume (or the Roland/SPD-SX folder)")};
  services_.folderPanel.chooseFolder(request, [this, failed = std::move(failed)](const std::optional<Path>& location) {
    if (!location) return;
    // Before the load: a chosen folder that fails to open is still the one to try at the next start.
    if (const auto bookmark = makeBookmark(*location)) services_.defaults.setBytes(bookmarkKey, *bookmark);
    tryLoad(*location);
    if (state_.lastError && failed) failed();
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
