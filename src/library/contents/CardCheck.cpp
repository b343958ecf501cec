#include "library/contents/CardCheck.h"

#include <algorithm>

#include "library/CardConflict.h"
#include "library/CardPaths.h"
#include "library/FileCopy.h"

namespace tamboro {

namespace {

/// `count` of the paths, evenly spread.
std::vector<Path> spread(const std::vector<Path>& all, std::size_t count) {
  std::vector<Path> some;
  for (std::size_t i = 0; i < count && i < all.size(); ++i)
    some.push_back(all[i * all.size() / std::min(count, all.size())]);
  return some;
}

std::vector<Path> entriesOf(const FileSystem& card, const Path& folder) {
  std::vector<Path> entries;
  for (const std::string& name : listedOrNone(card, folder))
    entries.push_back(folder / name);
  return entries;
}

std::vector<Path> documentsIn(const FileSystem& card, const Path& folder) {
  std::vector<Path> files = entriesOf(card, folder);
  std::erase_if(files, [](const Path& file) { return !cardpaths::isDocument(file); });
  return files;
}

std::vector<Path> filesToCompare(const FileSystem& card) {
  constexpr std::size_t kits = 8;
  constexpr std::size_t banks = 4;
  constexpr std::size_t wavesPerBank = 2;
  std::vector<Path> some = spread(documentsIn(card, cardpaths::kitFolder()), kits);
  for (const Path& bank : spread(entriesOf(card, cardpaths::waveParameterRoot()), banks))
    std::ranges::move(spread(documentsIn(card, bank), wavesPerBank), std::back_inserter(some));
  some.push_back(cardpaths::tagListFile());
  return some;
}

bool looksTheSame(const FileSystem& card, const KnownFiles& known) {
  std::size_t read = 0;
  std::size_t same = 0;
  std::string bytes;
  for (const Path& file : filesToCompare(card)) {
    try {
      if (card.status(file).kind != FileKind::regular) continue;
      card.read(file, bytes);
    } catch (const FileError&) {
      continue;
    }
    ++read;
    if (known.holds(file, contentHash(bytes))) ++same;
  }
  return read > 0 && 2 * same >= read;
}

}  // namespace

void requireSameCard(const FileSystem& files, const Path& root, const std::string& serial, const KnownFiles& known) {
  const std::string now = files.volumeSerial(root);
  if (now == serial && (!serial.empty() || looksTheSame(*files.rooted(root), known))) return;
  throw OtherCard(std::make_error_code(std::errc::no_such_device), files.resolved(root));
}

void requireFoldersInside(const FileSystem& card) {
  // FAT has no links, and there each folder that is asked for is read to its end: 442 reads of a full card.
  if (card.volumeSerial(".").starts_with("fat:")) return;
  std::vector<Path> folders{cardpaths::kitFolder(), cardpaths::waveFolder(), cardpaths::systemFolder()};
  for (const Path& parent : {cardpaths::waveParameterRoot(), cardpaths::waveDataRoot()}) {
    folders.push_back(parent);
    std::ranges::move(entriesOf(card, parent), std::back_inserter(folders));
  }
  for (const Path& folder : folders) {
    // Only a link leads anywhere else, and resolving one takes longer than asking for it.
    if (card.entryStatus(folder).kind != FileKind::other) continue;
    if (!isInside(card.resolved(folder), card.resolved({}))) throw CardConflict::leadsOutside(folder);
  }
}

}  // namespace tamboro
