#include "app/CardFolderPanel.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QStorageInfo>
#include <algorithm>

#include "app/DesktopPrompts.h"

namespace tamboro {

namespace {

bool isBelow(const Path& path, const Path& place) {
  const auto [inPlace, inPath] = std::mismatch(place.begin(), place.end(), path.begin(), path.end());
  return inPlace == place.end() && inPath != path.end();
}

}  // namespace

Path cardPanelStart(const std::vector<Path>& volumes, const std::vector<Path>& places, const Path& home,
                    const std::function<bool(const Path&)>& holdsCard, const std::function<bool(const Path&)>& exists) {
  for (const Path& volume : volumes) {
    const bool isMedia =
        std::any_of(places.begin(), places.end(), [&](const Path& place) { return isBelow(volume, place); });
    if (isMedia && holdsCard(volume)) return volume;
  }
  const auto place = std::find_if(places.begin(), places.end(), exists);
  return place != places.end() ? *place : home;
}

std::vector<Path> volumePlaces(const Path& userName) {
  return {Path("/media") / userName, Path("/run/media") / userName, "/Volumes", "/media", "/mnt"};
}

void CardFolderPanel::attach(QWidget* window, std::function<bool(const Path&)> holdsCard) {
  window_ = window;
  holdsCard_ = std::move(holdsCard);
}

Path CardFolderPanel::start() const {
  std::vector<Path> volumes;
  for (const QStorageInfo& volume : QStorageInfo::mountedVolumes())
    if (volume.isValid() && volume.isReady()) volumes.push_back(pathOf(volume.rootPath()));
  const auto exists = [this](const Path& place) {
    try {
      return files_.status(place).kind == FileKind::folder;
    } catch (const FileError&) {
      return false;
    }
  };
  return cardPanelStart(volumes, volumePlaces(qgetenv("USER").toStdString()), pathOf(QDir::homePath()), holdsCard_,
                        exists);
}

void CardFolderPanel::chooseFolder(const FolderRequest& request, std::function<void(std::optional<Path>)> answer) {
  // Over the window it is asked from, which gets the keyboard back.
  QWidget* asking = QApplication::activeWindow();
  openFolderPanel(asking ? asking : window_.data(), {request.prompt, request.message},
                  QFile::decodeName(start().c_str()), false, std::move(answer));
}

}  // namespace tamboro
