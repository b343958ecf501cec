#pragma once

#include <optional>
#include <string>

#include "library/contents/OpenCard.h"
#include "library/imports/StagingFolder.h"

namespace tamboro {

/// Where an imported sample comes to lie: its key, and its audio file's name in the bank's folder.
struct ImportPlace {
  std::int64_t bank;
  std::int64_t fileNumber;
  std::string fileName;
};

/// The lowest id of the user's banks that is free in the store and on the card, and a name for the audio that is free
/// in both and that FAT takes: `source`'s own, else with a number behind it. Nothing where every id is taken. Names are
/// compared as FAT does. The card must be open; `files` isn't rooted in it.
std::optional<ImportPlace> importPlace(const OpenCard& card, const FileSystem& files, const StagingFolder& staging,
                                       const Path& source);

}  // namespace tamboro
