#include "model/WaveUsage.h"

namespace tamboro {

std::string WaveUsage::id() const {
  return std::to_string(kitSlot) + "-" + std::to_string(padIndex) + "-" + (isSub ? "true" : "false");
}

}  // namespace tamboro
