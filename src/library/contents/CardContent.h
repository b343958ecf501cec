#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "card/SpdDocument.h"
#include "library/contents/KnownFiles.h"
#include "model/Kit.h"
#include "model/Wave.h"

namespace tamboro {

using KitDocs = std::map<std::int64_t, SpdDocument>;   ///< by slot
using WaveDocs = std::map<std::int64_t, SpdDocument>;  ///< by the sample's id
/// Where imported audio waits for the save, by the sample's id.
using StagedFiles = std::map<std::int64_t, Path>;

/// A whole card as read: records in ascending order of their keys, each with its document.
struct CardContent {
  std::vector<Kit> kits;
  std::vector<Wave> waves;
  KitDocs kitDocs;
  WaveDocs waveDocs;
  SpdDocument tagListDoc;
  KnownFiles known;  ///< settled
};

}  // namespace tamboro
