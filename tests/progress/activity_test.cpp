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
      text += (text.empty() ? "" : ", ") + one.name + " " + nameOf(one.state);
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
    throw Failure(1, "broken");
  } catch (const Failure&) {
    EXPECT_EQ(now(), "nothing");
  }
  activity.progress(6, 20);
  EXPECT_EQ(now(), "nothing") << "progress of nothing";
  EXPECT_EQ(changes, 5);
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

TEST_F(ActivityTest, RunsLeaveTheirMarksOnTheUnitsProcessors) {
  bool good = true;
  const auto program = [&](const char* product, const char* target) {
    const Activity::Run run(activity, product, target, [&] { return good; });
    return processors();
  };
  EXPECT_EQ(program("WS", "DSPFlash"), "Hub not selected, DSP running, RF1 not selected, RF2 not selected, Front not selected");
  good = false;
  program("WS", "RF1Flash");
  EXPECT_EQ(processors(), "Hub not selected, DSP done, RF1 failed, RF2 not selected, Front not selected");
  EXPECT_EQ(program("VC", "Front1Flash"), "Hub not selected, DSP not selected, Front A running") << "another product line";
  activity.forgetUnit();
  EXPECT_EQ(program("VC", "OldVRCFlash"), "DSP running");
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
