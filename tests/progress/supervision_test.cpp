#include <gmock/gmock.h>

#include "world.h"

namespace firmlane::test {
namespace {

class SupervisionTest : public testing::Test {
 protected:
  World world_;
  Supervision& supervision_ = world_.supervision;
  RunState& state_ = world_.state;
  Form1& form1_ = world_.form1;
};

TEST_F(SupervisionTest, TimedOutRisesOnTheTickThatReachesTheLimitAndStaysUp) {
  supervision_.setLimit(5);
  form1_.Watchdog.start(1000);
  world_.run(4999 * kMillisecond);
  EXPECT_FALSE(state_.TimedOut);
  world_.run(kMillisecond);
  EXPECT_TRUE(state_.TimedOut);
  supervision_.setLimit(5);
  world_.run(kSecond);
  EXPECT_TRUE(state_.TimedOut);
  EXPECT_EQ(supervision_.WatchdogTicks, 1);
  supervision_.WatchdogTicks = INT16_MAX;
  world_.run(kSecond);
  EXPECT_EQ(supervision_.WatchdogTicks, INT16_MAX) << "a wait of hours must not begin anew";
}

TEST_F(SupervisionTest, OnlyAVerdictAmidTheImageEndsTheLimit) {
  for (const auto& [sending, phase, timedOut] : {std::tuple{true, flash_phase::kFinished, false},
                                                 {true, flash_phase::kErased, true},
                                                 {false, flash_phase::kFinished, true}}) {
    state_.TimedOut = false;
    state_.FlashPhase = phase;
    supervision_.Sending = sending;
    supervision_.setLimit(1);
    form1_.Watchdog.start(500);
    world_.run(kSecond);
    EXPECT_EQ(state_.TimedOut, timedOut) << sending << phase;
  }
}

TEST_F(SupervisionTest, TicksShowProgressOnlyOfAnImageThatHasBytes) {
  const auto tick = form1_.Watchdog.OnTimer;
  form1_.Watchdog.OnTimer = [&] {
    bool ran = false;
    world_.queue.post([&] { ran = true; });
    tick();
    EXPECT_TRUE(ran) << "events run in a tick that shows progress";
  };
  form1_.Watchdog.start(500);
  state_.ProgressPercent = 7;
  for (const auto& [total, sent, text, percent] :
       {std::tuple{0, 0, "", 7}, {1, 1, "Programmed 1 bytes (100%)", 100}, {200, 50, "Programmed 50 bytes (25%)", 25}}) {
    supervision_.BytesSent = 99;  // of a stream before
    supervision_.beginSending(total);
    EXPECT_EQ(supervision_.BytesSent, 0);
    supervision_.BytesSent = sent;
    world_.run(kSecond);
    EXPECT_EQ(form1_.lblProgressInfo.Caption.get(), text);
    EXPECT_EQ(state_.ProgressPercent, percent);
    EXPECT_EQ(form1_.ProgressBar1.Value.get(), total == 0 ? 0 : percent);
  }
}

TEST_F(SupervisionTest, TheBarMovesInStepsUntilTheImageIsOut) {
  for (const auto& [before, slow, imageDone, shown, after] :
       {std::tuple{0, false, false, 5, 5}, {95, false, false, 0, 0}, {99, true, false, 0, 0}, {42, true, true, 100, 42}}) {
    supervision_.BarValue = static_cast<std::int16_t>(before);
    supervision_.SlowBar = slow;
    state_.ImageDone = imageDone;
    form1_.Timer1.start(100);
    world_.run(100 * kMillisecond);
    EXPECT_EQ(form1_.ProgressBar1.Value.get(), shown) << before;
    EXPECT_EQ(supervision_.BarValue, after) << before;
  }
}

TEST_F(SupervisionTest, AFrontPanelCountsBytesAgainstDigits) {
  for (const auto& [target, text] : {std::pair{"FrontFlash", "Programmed 500 bytes (50%)"},
                                     {"Front1Flash", "Programmed 500 bytes (50%)"},
                                     {"Front2Flash", "Programmed 500 bytes (50%)"},
                                     {"RF1Flash", "Programmed 500 bytes (12%)"}}) {
    state_.FlashTarget = target;
    const Activity::Span sending(supervision_.activity, Doing::Sending);
    supervision_.beginSending(4000);
    supervision_.BytesSent = 500;
    bool ran = false;
    world_.queue.post([&] { ran = true; });
    supervision_.UpdateProgress();
    EXPECT_TRUE(ran) << "events run between the bytes";
    EXPECT_EQ(form1_.lblProgressInfo.Caption.get(), text) << target;
    EXPECT_EQ(supervision_.activity.now().done, 500);
    EXPECT_EQ(supervision_.activity.now().total, target == std::string("RF1Flash") ? 4000 : 1000);
  }
  supervision_.BytesTotal = 0;
  EXPECT_THAT([this] { supervision_.UpdateProgress(); }, testing::ThrowsMessage<Failure>("Division by zero"));
}

TEST_F(SupervisionTest, OnlyTheWizardInChargeMirrorsTheBar) {
  int value = 0;
  for (const auto& [inAuto, inVrc, frmAuto, frmVRCAuto] :
       {std::tuple{false, false, 0, 0}, {true, false, 1, 0}, {false, true, 0, 1}, {true, true, 0, 1}}) {
    ++value;
    world_.frmAuto.Progress1.Value = 0;
    world_.frmVRCAuto.Progress1.Value = 0;
    state_.InAutoWizard = inAuto;
    state_.InVrcAutoWizard = inVrc;
    world_.wizard.setBar(value);
    EXPECT_EQ(world_.frmAuto.Progress1.Value.get(), frmAuto * value);
    EXPECT_EQ(world_.frmVRCAuto.Progress1.Value.get(), frmVRCAuto * value);
  }
}

}  // namespace
}  // namespace firmlane::test
