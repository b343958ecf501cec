#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <functional>

namespace tamboro::bench {

/// Keeps the compiler from seeing that nobody wants a result.
inline void use(const void* result) {
  asm volatile("" : : "g"(result) : "memory");
}

/// What something took, in seconds: by the wall clock and of the calling thread's processor.
struct Duration {
  double wall = 1e9;
  double processor = 1e9;

  /// A disturbance only ever adds.
  void keepBest(const Duration& next) {
    wall = std::min(wall, next.wall);
    processor = std::min(processor, next.processor);
  }
};

inline double processorSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

inline Duration duration(const std::function<void()>& work) {
  const auto wall = std::chrono::steady_clock::now();
  const double processor = processorSeconds();
  work();
  const double used = processorSeconds() - processor;
  return {std::chrono::duration<double>(std::chrono::steady_clock::now() - wall).count(), used};
}

/// How many times as long `work` takes as `floor`. The two take turns, and the best of each counts. The first round
/// only warms up.
inline Duration ratio(const char* name, int rounds, const std::function<void()>& work,
                      const std::function<void()>& floor) {
  work();
  floor();
  Duration ours, theirs;
  for (int i = 0; i < rounds; ++i) {
    theirs.keepBest(duration(floor));
    ours.keepBest(duration(work));
  }
  std::fprintf(stderr, "%s: %.3f ms against %.3f ms; processor %.3f against %.3f\n", name, ours.wall * 1e3,
               theirs.wall * 1e3, ours.processor * 1e3, theirs.processor * 1e3);
  return {ours.wall / theirs.wall, ours.processor / theirs.processor};
}

inline bool report(const char* name, double measured, double limit) {
  std::printf("%-24s %8.3f %8.3f\n", name, measured, limit);
  return measured <= limit;
}

}  // namespace tamboro::bench
