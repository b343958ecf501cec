#include "model/Keys.h"

#include <limits>

namespace tamboro {

WaveId waveId(std::int64_t bank, std::int64_t fileNumber) {
  std::int64_t id = 0;
  if (__builtin_mul_overflow(bank, wavesPerBank, &id) || __builtin_add_overflow(id, fileNumber, &id)) {
    return bank < 0 ? std::numeric_limits<WaveId>::min() : std::numeric_limits<WaveId>::max();
  }
  return id;
}

}  // namespace tamboro
