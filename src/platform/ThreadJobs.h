#pragma once

#include <memory>

#include "platform/BackgroundJobs.h"

namespace tamboro {

/// Jobs on a thread each; needs a running event loop for their ends. The destructor waits for running work and
/// drops the ends that have not been delivered.
std::unique_ptr<BackgroundJobs> makeThreadJobs();

}  // namespace tamboro
