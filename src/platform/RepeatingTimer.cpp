#include "platform/RepeatingTimer.h"

#include <QObject>
#include <QTimer>
#include <cmath>
#include <limits>
#include <utility>

namespace tamboro {

namespace {

int milliseconds(double seconds) {
  if (!std::isfinite(seconds) || seconds <= 0) return 1000;
  constexpr double longest = std::numeric_limits<int>::max();
  return static_cast<int>(std::fmin(std::fmax(std::round(seconds * 1000), 1), longest));
}

class LoopTimer : public RepeatingTimer {
 public:
  LoopTimer(double seconds, std::function<void()> tick) {
    QObject::connect(&timer_, &QTimer::timeout, std::move(tick));
    timer_.start(milliseconds(seconds));
  }

 private:
  QTimer timer_;
};

class LoopTimers : public Timers {
 public:
  std::unique_ptr<RepeatingTimer> repeat(double seconds, std::function<void()> tick) override {
    return std::make_unique<LoopTimer>(seconds, std::move(tick));
  }
};

}  // namespace

std::unique_ptr<Timers> makeEventLoopTimers() {
  return std::make_unique<LoopTimers>();
}

}  // namespace tamboro
