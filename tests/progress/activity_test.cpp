#include "progress/activity.h"

#include <gmock/gmock.h>

#include "world.h"

namespace firmlane::test {
namespace {

struct ActivityTest : World, testing::Test {
  int changes = 0;
  std::shared_ptr<void> listening = activity.listen([this] { ++changes; });

  /// "sending 5/20, file 2/4"
  [[nodiscard]] std::string now() const {
    const Activity::Phase phase = activity.now();
    std::string text = nameOf(phase.doing);
    if (phase.total > 0) {
      text += " " + std::to_string(phase.done) + "/" + std::to_string(phase.total);
    }
    return phase.parts > 0 ? text + ", " + std::to_string(phase.part) + " of " + std::to_string(phase.parts) : text;
  }
  [[nodiscard]] std::string processors() const {
    std::string text;
    for (const ProcessorReport& one : activity.processors()) {
      text += (text.empty() ? "" : ", ") + std::to_string(one.number) + " " + one.name + " " + nameOf(one.state);
    }
    return text;
  }
};

TEST_F(ActivityTest, NoPhaseOutlivesItsOperation) {
  try {
    const Activity::Span file(activity, Doing::Downloading, 0, 2, 4);
    const Activity::Span transfer(activity, Doing::Downloading);
    activity.progress(5, 20);
    EXPECT_EQ(now(), "downloading 5/20, 2 of 4") << "a part of the same tells which part it is";
    const Activity::Span reading(activity, Doing::ReadingUnit);
    EXPECT_EQ(now(), "reading the unit");
    throw Failure(1, "broken");
  } catch (const Failure&) {
    EXPECT_EQ(now(), "nothing");
  }
  activity.progress(6, 20);
  EXPECT_EQ(now(), "nothing") << "progress of nothing";
  EXPECT_EQ(changes, 7);
  // What does not stand on the stack may end in any order.
  auto reading = std::make_unique<Activity::Span>(activity, Doing::ReadingUnit);
  const Activity::Span fetching(activity, Doing::FetchingList);
  reading.reset();
  EXPECT_EQ(now(), "fetching a list");
}

TEST_F(ActivityTest, TimeUnderAMessageBoxIsNotTakenFromTheLimit) {
  state.TimedOut = false;
  supervision.setLimit(20);
  form1.Watchdog.start(1000);
  const Activity::Span waiting(activity, Doing::WaitingForSwitch, 20 * kSecond);
  run(5 * kSecond);
  EXPECT_EQ(activity.left(), 15 * kSecond);
  after(60 * kSecond, [this] { host.answer(MessageButton::OK); });
  screen.press = nullptr;
  host.showMessage("a box");
  run(2 * kSecond);
  EXPECT_EQ(supervision.WatchdogTicks, 8) << "one tick was pending under the box";
  EXPECT_NEAR(static_cast<double>(activity.left()) / kSecond, 12, 1);
  run(20 * kSecond);
  EXPECT_EQ(activity.left(), 0) << "never below";
}

TEST_F(ActivityTest, OnlyNoticeableTimeUnderABoxIsGivenBackAndOnlyToALimit) {
  const Activity::Span reading(activity, Doing::ReadingUnit);
  {
    const Activity::Span erasing(activity, Doing::Erasing, 20 * kSecond);
    run(5 * kSecond);
    changes = 0;
    activity.used(4 * kSecond);
    EXPECT_EQ(activity.left(), 15 * kSecond);
    EXPECT_EQ(changes, 0);
    activity.used(3 * kSecond);
    EXPECT_EQ(activity.left(), 17 * kSecond);
    EXPECT_EQ(changes, 1);
  }
  activity.used(0);
  EXPECT_EQ(activity.elapsed(), 5 * kSecond);
  EXPECT_EQ(activity.left(), 0);
}

TEST_F(ActivityTest, TheTimeLeftIsToldOnceTheLineIsSteadyAndNotWhileTheUnitTakesNothing) {
  struct Step {
    Micros wait;
    std::int64_t done;  // of 1000
    std::int64_t left;  // in milliseconds, -1 when it cannot be told
    bool stalled = false;
  };
  const Activity::Span sending(activity, Doing::Sending);
  for (const Step& step : {Step{5 * kSecond, 0, -1, true},
                           {0, 100, -1},
                           {kSecond, 101, -1},
                           {2 * kSecond, 102, 898 * 1500},
                           {3 * kSecond, 400, 600 * 20},
                           {kSecond, 400, 600 * 20 - 1000},
                           {2 * kSecond, 400, 600 * 20 - 3000},
                           {1, 400, -1, true},
                           {0, 500, -1},
                           {kSecond, 400, -1},
                           {2 * kSecond - 1, 500, -1},  // back and forth: no byte since the stall
                           {1, 500, -1},
                           {kSecond, 600, 400 * 40},
                           {kSecond, 990, 102},
                           {kSecond, 990, 0},
                           {kSecond, 1000, -1},
                           {10 * kSecond, 1000, -1}}) {
    run(step.wait);
    activity.progress(step.done, 1000);
    const auto estimate = activity.estimate();
    EXPECT_EQ(estimate ? *estimate / kMillisecond : -1, step.left) << step.done;
    EXPECT_EQ(activity.stalled(), step.stalled) << step.done;
  }
  {
    const Activity::Span another(activity, Doing::Sending);
    run(kSecond);
    activity.progress(50, 110);
    run(3 * kSecond);
    activity.progress(80, 110);
    EXPECT_EQ(activity.estimate(), 3 * kSecond) << "the line is measured from its first bytes on";
  }
  const int before = changes;
  activity.progress(1000, 1000);
  EXPECT_EQ(changes, before) << "nothing new";
  const Activity::Span downloading(activity, Doing::Downloading);
  activity.progress(5, 1000);
  run(10 * kSecond);
  EXPECT_FALSE(activity.stalled() || activity.estimate());
}

TEST_F(ActivityTest, RunsLeaveTheirMarksOnTheUnitsProcessors) {
  std::string during;
  const auto program = [&](const char* product, std::initializer_list<const char*> targets, bool good) {
    for (const char* target : targets) {
      changes = 0;
      const Activity::Run run(activity, product, target, [&] { return good; });
      during = processors();
      EXPECT_GT(changes, 0);
    }
    return processors();
  };
  program("WS", {"DSPFlash"}, true);
  EXPECT_EQ(during, "1 Hub not selected, 2 DSP running, 3 RF1 not selected, 4 RF2 not selected, 5 Front not selected");
  program("WS", {"RF1Flash", "FrontFlash"}, false);
  EXPECT_EQ(program("WS", {"NewHubFlash", "RF2Flash"}, true), "1 Hub done, 2 DSP done, 3 RF1 failed, 4 RF2 done, 5 Front failed");
  EXPECT_EQ(program("VC", {"Front1Flash", "Front2Flash"}, true),
            "1 Hub not selected, 2 DSP not selected, 3 Front A done, 4 Front B done")
      << "another product line";
  activity.forgetUnit();
  EXPECT_EQ(program("VC", {"OldVRCFlash"}, true), "1 DSP done");
}

TEST_F(ActivityTest, ListenersComeAndGo) {
  std::shared_ptr<void> second = activity.listen([&] { second.reset(); });
  activity.setProcessors("WS", {{.target = "DSPFlash", .name = "DSP"}});
  activity.setProcessors("WS", {{.target = "DSPFlash", .name = "DSP"}});
  EXPECT_EQ(changes, 1) << "what is as before is no change";
  listening.reset();
  activity.forgetUnit();
  EXPECT_EQ(changes, 1);
}

}  // namespace
}  // namespace firmlane::test
