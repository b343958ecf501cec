#include "library/imports/ImportPlace.h"

#include <algorithm>
#include <cstdio>
#include <unordered_set>

#include "library/CardPaths.h"
#include "text/Unicode.h"

namespace tamboro {
namespace {

/// What FAT refuses in a name becomes "_": characters it has no place for and a blank or a point at the end.
std::string nameForFat(std::string name) {
  constexpr std::string_view refused = "\"*/:<>?\\|";
  constexpr char del = 0x7F;
  for (char& c : name) {
    const auto code = static_cast<unsigned char>(c);
    if (code < 0x20 || c == del || refused.find(c) != std::string_view::npos) c = '_';
  }
  if (!name.empty() && (name.back() == ' ' || name.back() == '.')) name.back() = '_';
  return name;
}

/// At most so many bytes of UTF-8, and no character cut in two.
std::string beginning(std::string text, std::size_t size) {
  if (text.size() <= size) return text;
  while (size > 0 && (static_cast<unsigned char>(text[size]) & 0xC0) == 0x80)
    --size;
  text.resize(size);
  return text;
}

/// No longer than a file system takes: what is too much goes from the stem's end, and only then from the extension's.
std::string numbered(const Path& stem, int counter, const Path& extension) {
  constexpr std::size_t longestName = 255;
  constexpr std::size_t leastStem = 4;
  char number[16];
  std::snprintf(number, sizeof number, "_%02d", counter);
  std::string end(number);
  end += beginning(extension.native(), longestName - leastStem - end.size());
  return beginning(stem.native(), longestName - end.size()) + end;
}

std::string freeAudioName(const OpenCard& card, const FileSystem& files, const StagingFolder& staging,
                          std::int64_t bank, const std::string& wanted) {
  std::unordered_set<std::string> taken;
  const auto take = [&](std::string_view path) { taken.insert(fileNameKey(path.substr(path.find_last_of('/') + 1))); };
  for (auto wave = std::ranges::lower_bound(card.waves, waveId(bank, 0), {}, &Wave::id);
       wave != card.waves.end() && wave->id() < waveId(bank + 1, 0); ++wave) {
    if (wave->bank == bank) take(wave->relativeAudioPath());
  }
  const Path stagingFolder = staging.path() / bankFolder(bank);
  for (const Path& file : staging.inUse()) {
    if (file.parent_path() == stagingFolder) take(file.native());
  }
  const Path folder = *card.root / cardpaths::waveDataFolder(bank);
  try {
    // A folder that doesn't exist yet holds no names.
    if (files.status(folder).kind == FileKind::folder)
      for (const std::string& name : files.list(folder))
        take(name);
  } catch (const FileError&) {
    // The save that can't read the folder either says so.
  }
  const auto isTaken = [&](const std::string& candidate) {
    // The folder is asked, too: it can answer to names that a listing doesn't tell.
    return taken.contains(fileNameKey(candidate)) || !card.isFree(files, cardpaths::waveDataFolder(bank) / candidate);
  };
  const Path name(wanted);
  std::string candidate = wanted;
  for (int counter = 1; isTaken(candidate); ++counter) {
    candidate = numbered(name.stem(), counter, name.extension());
  }
  return candidate;
}

}  // namespace

std::optional<ImportPlace> importPlace(const OpenCard& card, const FileSystem& files, const StagingFolder& staging,
                                       const Path& source) {
  WaveId free = std::max(waveId(firstUserBank, 0), card.maybeFree);
  auto wave = std::ranges::lower_bound(card.waves, free, {}, &Wave::id);
  for (; free <= waveId(lastUserBank, wavesPerBank - 1); ++free) {
    while (wave != card.waves.end() && wave->id() < free)
      ++wave;
    if (wave != card.waves.end() && wave->id() == free) continue;
    const std::int64_t bank = free / wavesPerBank;
    const std::int64_t number = free % wavesPerBank;
    if (!card.pendingDeletions.contains(free) && !card.isFree(files, cardpaths::waveParameterFile(bank, number)))
      continue;
    return ImportPlace{bank, number, freeAudioName(card, files, staging, bank, nameForFat(source.filename().native()))};
  }
  return std::nullopt;
}

}  // namespace tamboro
