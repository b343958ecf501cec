#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <utility>

namespace tamboro {

/// Runs work off the main thread and hands its end back to it. All operations are for the main thread.
class BackgroundJobs {
 public:
  using JobId = std::uint64_t;

  BackgroundJobs() = default;
  BackgroundJobs(const BackgroundJobs&) = delete;
  BackgroundJobs& operator=(const BackgroundJobs&) = delete;
  virtual ~BackgroundJobs() = default;

  /// `work` runs on another thread at raised priority and must not throw; `done` then runs on the main thread as an
  /// event of its own, never from inside this call. Jobs may run side by side.
  virtual JobId start(std::function<void()> work, std::function<void()> done) = 0;
  /// As `start` with work that may throw: `done` gets what it threw, or nothing.
  JobId attempt(std::function<void()> work, std::function<void(const std::exception_ptr& error)> done) {
    const auto error = std::make_shared<std::exception_ptr>();
    return start(
        [work = std::move(work), error] {
          try {
            work();
          } catch (...) {
            *error = std::current_exception();
          }
        },
        [done = std::move(done), error] { done(*error); });
  }
  /// Blocks until this job has ended and its `done` has run; no other job's does meanwhile. A job whose end has been
  /// delivered is not waited for.
  virtual void waitFor(JobId job) = 0;
  /// Blocks until every started job has ended and its `done` has run, those that these start included.
  virtual void waitForAll() = 0;
};

}  // namespace tamboro
