#include "platform/event_queue.h"

#include <gmock/gmock.h>

#include "platform/virtual/virtual_time.h"

namespace firmlane {
namespace {

using testing::ElementsAre;

class EventQueueTest : public testing::Test {
 protected:
  VirtualTime time_;
  EventQueue queue_{time_, time_};
};

TEST_F(EventQueueTest, APassRunsWhatWasPendingAndNotWhatHandlersAdd) {
  std::vector<std::string> log;
  queue_.post([&] {
    log.emplace_back("first");
    queue_.post([&] { log.emplace_back("added"); });
  });
  queue_.post([&] { log.emplace_back("second"); });
  queue_.PumpEvents();
  EXPECT_THAT(log, ElementsAre("first", "second"));
  queue_.PumpEvents();
  EXPECT_THAT(log, ElementsAre("first", "second", "added"));
}

TEST_F(EventQueueTest, APassTakesInWhatHasHappenedOutside) {
  bool ran = false;
  time_.after(0, [&] { queue_.post([&] { ran = true; }); });
  queue_.post([] {});  // so that it need not rest
  queue_.PumpEvents();
  EXPECT_TRUE(ran);
}

TEST_F(EventQueueTest, APassTakesWhatIsDueAndRestsWhenThereIsNothing) {
  Timer timer(queue_);
  std::string log;
  timer.OnTimer = [&] { log += "tick "; };
  timer.start(1);
  queue_.holdUntilTime(kMillisecond);
  queue_.post([&] { log += "posted "; });
  queue_.WaitEvents();
  EXPECT_EQ(log, "posted tick ");
  queue_.PumpEvents();
  EXPECT_EQ(time_.now(), kMillisecond + 20) << "loops count passes by the thousand";
}

TEST_F(EventQueueTest, ANestedPassTakesOverWhatTheOuterOneHadLeft) {
  std::vector<std::string> log;
  queue_.post([&] {
    log.emplace_back("outer begins");
    queue_.PumpEvents();
    log.emplace_back("outer ends");
  });
  queue_.post([&] { log.emplace_back("inner"); });
  queue_.PumpEvents();
  EXPECT_THAT(log, ElementsAre("outer begins", "inner", "outer ends"));
}

TEST_F(EventQueueTest, ATickRunsWhileAnEarlierTickOfItsTimerIsOnTheStack) {
  Timer timer(queue_);
  int depth = 0;
  int deepest = 0;
  timer.OnTimer = [&] {
    deepest = std::max(deepest, ++depth);
    if (depth < 3) {
      queue_.WaitEvents();
    }
    --depth;
  };
  timer.start(10);
  queue_.WaitEvents();
  EXPECT_EQ(deepest, 3);
  EXPECT_EQ(time_.now(), 30 * kMillisecond);
}

TEST_F(EventQueueTest, TicksThatFellDueUnderAHoldRunInTheirOrder) {
  std::string log;
  Timer late(queue_);
  Timer early(queue_);
  late.OnTimer = [&] { log += "late "; };
  early.OnTimer = [&] { log += "early "; };
  late.start(20);
  early.start(15);
  queue_.holdUntilTime(25 * kMillisecond);
  queue_.PumpEvents();
  EXPECT_EQ(log, "early late ");
}

TEST_F(EventQueueTest, AWaitInsideAHandlerFindsOneTickPendingHoweverLongItHeld) {
  Timer first(queue_);
  Timer second(queue_);
  int ticks = 0;
  second.OnTimer = [&] { ++ticks; };
  first.OnTimer = [&] {
    first.stop();
    queue_.holdUntilTime(time_.now() + 50 * kMillisecond);
    queue_.PumpEvents();
    EXPECT_EQ(ticks, 1);
  };
  first.start(10);
  second.start(10);
  queue_.WaitEvents();
}

TEST_F(EventQueueTest, AHeldProgramCountsOneTickHoweverLongItWasHeld) {
  Timer timer(queue_);
  int ticks = 0;
  timer.OnTimer = [&] { ++ticks; };
  timer.start(1000);
  bool answered = false;
  time_.after(60 * kSecond, [&] { answered = true; });
  queue_.holdUntil([&] { return answered; });
  EXPECT_EQ(ticks, 0);
  queue_.PumpEvents();
  EXPECT_EQ(ticks, 1);
  queue_.WaitEvents();
  EXPECT_EQ(ticks, 2);
  EXPECT_EQ(time_.now(), 61 * kSecond);
}

// What becomes of a tick that is pending, and of the time that has run, when the timer is touched.
TEST_F(EventQueueTest, TouchingATimerStartsItsIntervalAnewAndDropsAPendingTick) {
  struct Case {
    const char* name;
    void (*touch)(Timer&);
    Micros nextTick;  // after the touch, in the pass that would have run the tick; kForever for none
  };
  for (const Case& c : {Case{"interval", [](Timer& t) { t.setInterval(50); }, 50 * kMillisecond},
                        Case{"enabled again", [](Timer& t) { t.setEnabled(true); }, 90 * kMillisecond},
                        Case{"disabled", [](Timer& t) { t.stop(); }, kForever},
                        Case{"interval 0", [](Timer& t) { t.setInterval(0); }, kForever}}) {
    SCOPED_TRACE(c.name);
    Timer touching(queue_);
    Timer timer(queue_);
    Micros tickedAt = kForever;
    timer.OnTimer = [&] { tickedAt = std::min(tickedAt, time_.now()); };
    const Micros touchedAt = time_.now() + 90 * kMillisecond;
    touching.OnTimer = [&] {
      touching.stop();
      c.touch(timer);
    };
    touching.start(90);
    timer.start(90);
    while (time_.now() < touchedAt + kSecond) {
      queue_.waitEventsUntil(touchedAt + kSecond);
    }
    EXPECT_EQ(tickedAt == kForever ? kForever : tickedAt - touchedAt, c.nextTick);
  }
}

TEST_F(EventQueueTest, AWaitThatNothingCanEndFailsInsteadOfHanging) { EXPECT_THROW(queue_.WaitEvents(), NothingCanHappen); }

TEST_F(EventQueueTest, AFailureInAHandlerDoesNotStrikeTheWaitThatWasPumping) {
  std::string told;
  queue_.setFailureHandler([&](const Failure& failure) { told = failureText("Error: ", failure); });
  queue_.post([] { throw Failure(53, "File not found"); });
  bool after = false;
  queue_.post([&] { after = true; });
  queue_.PumpEvents();
  EXPECT_EQ(told, "Error: File not found (#53)");
  EXPECT_TRUE(after);
}

TEST_F(EventQueueTest, TheEndOfTheProgramUnwindsEveryNestedWait) {
  queue_.post([&] { queue_.WaitEvents(); });
  time_.after(kSecond, [&] { queue_.post([] { throw ProgramEnded{}; }); });
  EXPECT_THROW(queue_.WaitEvents(), ProgramEnded);
}

}  // namespace
}  // namespace firmlane
