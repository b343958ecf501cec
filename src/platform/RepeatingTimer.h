#pragma once

#include <functional>
#include <memory>

namespace tamboro {

/// A running timer; destroying it stops it, also a tick that is due.
class RepeatingTimer {
 public:
  RepeatingTimer() = default;
  RepeatingTimer(const RepeatingTimer&) = delete;
  RepeatingTimer& operator=(const RepeatingTimer&) = delete;
  virtual ~RepeatingTimer() = default;
};

class Timers {
 public:
  Timers() = default;
  Timers(const Timers&) = delete;
  Timers& operator=(const Timers&) = delete;
  virtual ~Timers() = default;

  /// Calls `tick` on the main thread every `seconds`, first after one whole period.
  virtual std::unique_ptr<RepeatingTimer> repeat(double seconds, std::function<void()> tick) = 0;
};

/// Timers of the main thread's event loop. A period that isn't a positive number runs as one second.
std::unique_ptr<Timers> makeEventLoopTimers();

}  // namespace tamboro
