#pragma once

#include <sys/types.h>

#include <string>

namespace tamboro {

/// The serial number of the volume that an open file or folder lies on, with the kind of number in front
/// ("fat:1A2B-3C4D", "uuid:..."); empty where none can be known. Never throws; cheap enough for every save.
std::string serialOfVolume(int descriptor, dev_t device);

}  // namespace tamboro
