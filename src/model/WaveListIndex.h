#pragma once

#include <span>

#include "card/SpdDocument.h"
#include "model/Wave.h"

/// The card's three derived lists of all samples, built from nothing at every save. All functions are pure; `tagCount`
/// is the number of tags in the tag list, and a sample whose tag is none of them stands in the name list only.
///
/// By name means: NFC of the lower-cased names in code point order, equal names by wave id.
namespace tamboro {

struct WaveListIndexes {
  SpdDocument byName;       // SYSTEM/wavelist_name.spd
  SpdDocument byTagNumber;  // SYSTEM/wavelist_tagnum.spd: per tag, by wave id
  SpdDocument byTagName;    // SYSTEM/wavelist_tagname.spd: per tag, by name
};

/// All three for one sort; what a save wants.
WaveListIndexes buildWaveListIndexes(std::span<const Wave> waves, int tagCount);

SpdDocument buildNameIndex(std::span<const Wave> waves);
SpdDocument buildTagNumberIndex(std::span<const Wave> waves, int tagCount);
SpdDocument buildTagNameIndex(std::span<const Wave> waves, int tagCount);

}  // namespace tamboro
