#pragma once

#include <atomic>
#include <cstddef>

namespace tamboro {

/// How far a save is; written by its job, read by whoever shows it, on any thread.
struct SaveProgress {
  std::atomic<std::size_t> done = 0;    ///< files written
  std::atomic<std::size_t> total = 0;   ///< files to write; 0 until that is known
  std::atomic<std::size_t> placed = 0;  ///< files, in the order of the plan, that may stand in their places
};

}  // namespace tamboro
