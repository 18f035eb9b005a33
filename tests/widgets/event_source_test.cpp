// The real clock and event loop below the queue.
#include <gtest/gtest.h>

#include <QTimer>
#include <ctime>

#include "real_ground.h"

#ifdef Q_OS_WIN
#include "platform/win32.h"
#endif

namespace firmlane::test {
namespace {

TEST(QtEventSourceTest, SleepComesBackWhenSomethingWasTakenInAndHandlersRunOutsideOfSlots) {
  RealGround ground;
  bool inSlot = false;
  bool ran = false;
  QTimer::singleShot(30, [&] {
    inSlot = true;
    ground.queue.post([&] {
      ran = true;
      EXPECT_FALSE(inSlot);
    });
    inSlot = false;
  });
  const Micros before = ground.queue.now();
  ground.queue.waitEventsUntil(before + 5 * kSecond);
  EXPECT_TRUE(ran);
  EXPECT_LT(ground.queue.now() - before, 2 * kSecond);
}

TEST(QtEventSourceTest, WaitsNeverEndEarly) {
  RealGround ground;
  for (const Micros span : {300, 1500, 20300}) {
    const Micros before = ground.queue.now();
    ground.queue.holdUntilTime(before + span);
    const Micros over = ground.queue.now() - before - span;
    EXPECT_GE(over, 0);
    EXPECT_LT(over, 100 * kMillisecond) << span;
  }
}

TEST(QtEventSourceTest, AScaledClockRunsThatMuchFaster) {
  QtEventSource source(50.0);
  EventQueue queue(source, source);
  const QtEventSource real;
  const Micros before = real.now();
  queue.holdUntilTime(queue.now() + 5 * kSecond);
  const Micros taken = real.now() - before;
  EXPECT_GE(taken, 100 * kMillisecond);
  EXPECT_LT(taken, kSecond);
}

#ifdef Q_OS_WIN  // where the library's clock goes on while the program rests, and the system counts in ticks
constexpr double kTick = 1.0 / 64;
double processorSeconds() {
  constexpr double kTicks = 1e7;
  FILETIME unused{};
  FILETIME kernel{};
  FILETIME user{};
  ::GetProcessTimes(::GetCurrentProcess(), &unused, &unused, &kernel, &user);
  return (kernel.dwLowDateTime + user.dwLowDateTime) / kTicks;
}
#else
constexpr double kTick = 0;
double processorSeconds() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }
#endif

TEST(QtEventSourceTest, WaitingCostsNextToNoProcessorTime) {
  RealGround ground;
  Timer timer(ground.queue);
  timer.start(100);
  const double before = processorSeconds();
  ground.run(kSecond);
  EXPECT_LT(processorSeconds() - before, 0.02 + 2 * kTick);
}

TEST(QtEventSourceTest, AnEndFromOutsideUnwindsEveryWait) {
  for (const bool hold : {false, true}) {
    RealGround ground;
    QTimer::singleShot(20, [&] { ground.source.requestEnd(); });
    EXPECT_THROW(hold ? ground.queue.holdUntil([] { return false; }) : ground.queue.WaitEvents(), ProgramEnded);
    EXPECT_THROW(ground.queue.PumpEvents(), ProgramEnded);
  }
}

}  // namespace
}  // namespace firmlane::test
