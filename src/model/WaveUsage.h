#pragma once

#include <string>

#include "model/Keys.h"

namespace tamboro {

/// One use of a sample on a pad, with the kit's name at the time of asking.
struct WaveUsage {
  Slot kitSlot;
  std::string kitName;
  int padIndex;
  bool isSub;  // through `SubWv` instead of `Wv`

  /// Identity, such as "3-14-true".
  std::string id() const;

  friend bool operator==(const WaveUsage&, const WaveUsage&) = default;
};

}  // namespace tamboro
