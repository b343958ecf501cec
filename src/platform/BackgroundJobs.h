#pragma once

#include <functional>

namespace tamboro {

/// Runs work off the main thread and hands its end back to it. All operations are for the main thread.
class BackgroundJobs {
 public:
  BackgroundJobs() = default;
  BackgroundJobs(const BackgroundJobs&) = delete;
  BackgroundJobs& operator=(const BackgroundJobs&) = delete;
  virtual ~BackgroundJobs() = default;

  /// `work` runs on another thread at raised priority and must not throw; `done` then runs on the main thread as an
  /// event of its own, never from inside this call. Jobs may run side by side.
  virtual void start(std::function<void()> work, std::function<void()> done) = 0;
  /// Blocks until every started job has ended and its `done` has run, those that these start included.
  virtual void waitForAll() = 0;
};

}  // namespace tamboro
