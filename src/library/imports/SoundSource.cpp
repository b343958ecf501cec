#include "library/imports/SoundSource.h"

#include <QString>

namespace tamboro {

bool isWaveName(const Path& path) {
  return QString::fromStdString(path.extension().native()).toLower() == QLatin1String(".wav");
}

/// A file's name need not be UTF-8.
std::string sampleName(const Path& file) {
  return QString::fromStdString(file.stem().native()).toStdString();
}

std::vector<SoundSource> soundsIn(const FileSystem& files, const Path& folder) {
  std::vector<SoundSource> found;
  for (const std::string& name : files.list(folder)) {
    if (name.starts_with('.')) continue;
    const Path path = folder / name;
    const bool isFolder = files.entryStatus(path).kind == FileKind::folder;
    if (isFolder || isWaveName(path)) found.push_back({path, isFolder});
  }
  return found;
}

}  // namespace tamboro
