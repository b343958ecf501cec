#pragma once

#include <cstdint>

namespace tamboro {

/// A kit's key: the number in its file name, any integer that a name can hold.
using Slot = std::int64_t;

/// A sample's key: bank times 100 plus file number. In a pad's leaves a negative value means no sound.
using WaveId = std::int64_t;

inline constexpr WaveId noWave = -1;
inline constexpr std::int64_t firstUserBank = 2;  // banks 0 and 1 are the factory's
inline constexpr std::int64_t lastUserBank = 99;
inline constexpr std::int64_t wavesPerBank = 100;

/// Saturates where the product or the sum leaves the 64-bit range: folder names on a card are free numbers.
WaveId waveId(std::int64_t bank, std::int64_t fileNumber);

}  // namespace tamboro
