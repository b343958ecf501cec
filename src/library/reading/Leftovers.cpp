#include "library/reading/Leftovers.h"

#include "library/CardPaths.h"
#include "library/FileCopy.h"

namespace tamboro {

namespace {

FileStatus statusOrNone(const FileSystem& card, const Path& path) {
  try {
    return card.entryStatus(path);
  } catch (const FileError&) {
    return {};
  }
}

void countIn(const FileSystem& card, const Path& folder, Leftovers& leftovers) {
  for (const std::string& name : listedOrNone(card, folder)) {
    if (!cardpaths::isTemporary(name)) continue;
    ++leftovers.count;
    const Path path = folder / name;
    if (statusOrNone(card, path).kind != FileKind::folder) continue;
    for (const std::string& inside : listedOrNone(card, path))
      leftovers.bytes += statusOrNone(card, path / inside).size;
  }
}

}  // namespace

Leftovers findLeftovers(const FileSystem& card) {
  Leftovers leftovers;
  countIn(card, {}, leftovers);
  if (leftovers.count == 0) return leftovers;
  for (const Path& folder : {cardpaths::kitFolder(), cardpaths::systemFolder(), cardpaths::waveFolder()})
    countIn(card, folder, leftovers);
  for (const Path& parent : {cardpaths::waveParameterRoot(), cardpaths::waveDataRoot()}) {
    countIn(card, parent, leftovers);
    for (const std::string& bank : listedOrNone(card, parent)) {
      if (!cardpaths::isTemporary(bank)) countIn(card, parent / bank, leftovers);
    }
  }
  return leftovers;
}

}  // namespace tamboro
