#pragma once

#include "library/saving/SaveSnapshot.h"

namespace tamboro {

/// Writes one kit and its samples, parameters and audio, as a folder of their own. The folder may exist: its other
/// files stay. Throws FileError at the first failure; what was written so far stays. Runs off the main thread.
void exportKitJob(const KitExport& values, FileSystem& files);

}  // namespace tamboro
