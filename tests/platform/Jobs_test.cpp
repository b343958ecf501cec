#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QEvent>
#include <QThread>
#include <future>
#include <limits>

#include "platform/RepeatingTimer.h"
#include "platform/ThreadJobs.h"

namespace tamboro::test {
namespace {

using ::testing::ElementsAre;

class ThreadJobs : public ::testing::Test {
 protected:
  std::unique_ptr<BackgroundJobs> jobs = makeThreadJobs();
  std::vector<int> ends;

  void processUntilEnds(std::size_t count) {
    while (ends.size() < count)
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
};

TEST_F(ThreadJobs, RunSideBySideElsewhereAndEndOnTheMainThreadWithoutWhatTheyHeld) {
  QThread* const mainThread = QThread::currentThread();
  QThread* workThread = nullptr;
  std::promise<void> secondHasEnded;
  auto held = std::make_shared<int>(1);
  const std::weak_ptr<int> watch = held;
  jobs->start(
      [&, held = std::move(held)] {
        workThread = QThread::currentThread();
        secondHasEnded.get_future().wait();
      },
      [&] { ends.push_back(watch.expired() ? 1 : 0); });
  jobs->start([] {},
              [&] {
                EXPECT_EQ(QThread::currentThread(), mainThread);
                ends.push_back(2);
                secondHasEnded.set_value();
              });
  processUntilEnds(2);
  EXPECT_THAT(ends, ElementsAre(2, 1));
  EXPECT_NE(workThread, mainThread);
}

TEST_F(ThreadJobs, WaitingRunsTheEndsAndWhatTheyStartButNoOtherEvent) {
  struct Receiver : QObject {
    bool reached = false;
    bool event(QEvent*) override { return reached = true; }
  } receiver;
  QCoreApplication::postEvent(&receiver, new QEvent(QEvent::User));
  jobs->start([] {},
              [&] {
                ends.push_back(1);
                jobs->start([] {}, [&] { ends.push_back(2); });
              });
  jobs->waitForAll();
  EXPECT_FALSE(receiver.reached);
  QCoreApplication::processEvents();  // the ends' own events find nothing more to run
  EXPECT_THAT(ends, ElementsAre(1, 2));
}

TEST_F(ThreadJobs, OneJobIsWaitedForWithoutTheOthersAndWhatItThrewIsTold) {
  std::promise<void> mayEnd;
  jobs->start([&] { mayEnd.get_future().wait(); }, [&] { ends.push_back(1); });
  const auto failing = jobs->attempt([] { throw std::runtime_error("no"); },
                                     [&](const std::exception_ptr& error) { ends.push_back(error ? 2 : 0); });
  jobs->waitFor(failing);
  EXPECT_THAT(ends, ElementsAre(2));
  jobs->waitFor(failing);
  mayEnd.set_value();
  processUntilEnds(2);
  EXPECT_THAT(ends, ElementsAre(2, 1));
}

TEST_F(ThreadJobs, TheEndOfAllWaitsForRunningWorkAndDropsItsEnd) {
  bool worked = false;
  jobs->start(
      [&] {
        QThread::msleep(20);
        worked = true;
      },
      [&] { ends.push_back(1); });
  jobs.reset();
  EXPECT_TRUE(worked);
  QCoreApplication::processEvents();
  EXPECT_THAT(ends, ElementsAre());
}

// A period of nothing would tick without end, one that overflows at once; neither may happen.
TEST(Timers, TickUntilTheyAreDestroyedAndOddPeriodsNotAtOnce) {
  const auto timers = makeEventLoopTimers();
  int ticks = 0;
  int oddTicks = 0;
  std::vector<std::unique_ptr<RepeatingTimer>> odd;
  for (const double seconds : {0.0, -30.0, std::numeric_limits<double>::quiet_NaN(), 2147483.9, 1e300})
    odd.push_back(timers->repeat(seconds, [&] { ++oddTicks; }));
  std::unique_ptr<RepeatingTimer> timer;
  timer = timers->repeat(0.001, [&] {
    if (++ticks == 3) timer.reset();  // from its own tick
  });
  while (timer)
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  EXPECT_EQ(ticks, 3);
  EXPECT_EQ(oddTicks, 0);
}

}  // namespace
}  // namespace tamboro::test
