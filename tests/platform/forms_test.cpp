#include <gmock/gmock.h>

#include "world.h"

namespace firmlane::test {
namespace {

using testing::ElementsAre;

class FormsTest : public testing::Test {
 protected:
  World world_;
  FormHost& host_ = world_.host;
  Form1& form1_ = world_.form1;
};

TEST_F(FormsTest, LoadingGivesControlsTheirValuesAtStartAndUnloadingForgetsThem) {
  FrmPort& form = world_.frmPort;
  form.Command1.Show();
  form.OnLoad = [&] { EXPECT_FALSE(form.Command1.Visible) << "written before the load"; };
  form.Show();
  form.Option1(7).Value = true;
  form.Timer1.start(100);
  form.Unload();
  EXPECT_EQ(form.Option1.selected(), 0);
  EXPECT_FALSE(form.Timer1.enabled());
  EXPECT_FALSE(form.Loaded || form.Visible);
  EXPECT_THAT(world_.screen.log(), ElementsAre("show frmPort", "unload frmPort"));
}

TEST_F(FormsTest, ACheckBoxRaisesItsClickWhenCodeChangesIt) {
  CheckBox& box = world_.frmAuto.Check1;
  int clicks = 0;
  box.OnClick = [&] { ++clicks; };
  box.Value = 1;
  box.Value = 1;
  EXPECT_EQ(clicks, 1);
  world_.frmAuto.Show();  // the reset at load is no change that anybody made
  EXPECT_EQ(clicks, 1);
  box.Show();
  host_.click(box);
  world_.queue.PumpEvents();
  EXPECT_EQ(clicks, 2);
  EXPECT_TRUE(box.checked());
}

TEST_F(FormsTest, OptionsOfOneGroupExcludeEachOtherAndLeaveOtherGroupsAlone) {
  form1_.Option2(1).Value = true;
  form1_.Option1(2).Value = true;
  EXPECT_EQ(form1_.Option1.selected(), 2);
  EXPECT_EQ(form1_.Option2.selected(), 1);
  EXPECT_TRUE(form1_.Option5.Value);
}

TEST_F(FormsTest, AProgressBarStaysWithinItsRange) {
  form1_.ProgressBar1.Value = 140;
  EXPECT_EQ(form1_.ProgressBar1.Value, 100);
  form1_.ProgressBar1.Value = -3;
  EXPECT_EQ(form1_.ProgressBar1.Value, 0);
}

// What a user may not do now, and why.
TEST_F(FormsTest, ActionsAreRefusedWithTheirReason) {
  EXPECT_EQ(host_.click(form1_.btnSN), "not visible");
  EXPECT_EQ(host_.click(form1_.Option5), "not visible") << "its frame is hidden";
  form1_.frmFS.Show();
  form1_.frmFS.Disable();
  EXPECT_EQ(host_.click(form1_.Option5), "not enabled") << "its frame is disabled";
  EXPECT_EQ(host_.click(world_.frmPort.Command2), "not visible") << "its form is not on screen";
  EXPECT_EQ(host_.choose(form1_.Command3, 0), "no such control");
  form1_.List1.Show();
  form1_.List1.AddItem("only");
  EXPECT_EQ(host_.choose(form1_.List1, 1), "no such line");
  EXPECT_EQ(host_.type(form1_.txtNum, "1"), "not visible");
  EXPECT_EQ(host_.answer(MessageButton::OK), "no message box");

  world_.frmPort.OnLoad = [&] {
    world_.queue.PumpEvents();
    EXPECT_EQ(host_.click(form1_.Command3), "blocked by frmPort") << "a click while it loads would start over below it";
  };
  world_.after(kSecond, [&] {
    EXPECT_EQ(host_.click(form1_.Command3), "blocked by frmPort");
    EXPECT_EQ(host_.close(form1_), "blocked by frmPort");
    EXPECT_EQ(host_.close(world_.frmPort), std::nullopt);
  });
  world_.frmPort.ShowModal();

  world_.screen.onBox = [&](const MessageBox&) {
    EXPECT_EQ(host_.click(form1_.Command3), "message box is up");
    EXPECT_EQ(host_.answer(MessageButton::Yes), "no such button");
  };
  world_.screen.answerNext(MessageButton::OK);
  host_.showMessage("held");
}

TEST_F(FormsTest, AClickThatHasBecomeImpossibleIsDropped) {
  int clicks = 0;
  form1_.Command3.OnClick = [&] {
    ++clicks;
    form1_.Command3.Disable();
  };
  host_.click(form1_.Command3);
  host_.click(form1_.Command3);
  world_.queue.PumpEvents();
  EXPECT_EQ(clicks, 1);
}

TEST_F(FormsTest, AMessageBoxHoldsEveryHandlerAndBytesCollect) {
  world_.wires.add(1);
  world_.mainPort.setReceiveThreshold(1);
  world_.mainPort.Open();
  std::vector<std::string> log;
  world_.mainPort.OnComm = [&] { log.push_back("bytes " + std::to_string(world_.mainPort.Read().size())); };
  form1_.Watchdog.OnTimer = [&] { log.emplace_back("tick"); };
  form1_.Watchdog.start(1000);
  for (int second = 1; second <= 59; ++second) {
    world_.after(second * kSecond, [this] { world_.wires.find(1)->deliver(Bytes(1, 0x2A)); });
  }
  world_.screen.answerNext(MessageButton::OK, 60 * kSecond);
  host_.showMessage("look away for a minute");
  EXPECT_TRUE(log.empty());
  world_.queue.PumpEvents();
  EXPECT_THAT(log, ElementsAre("bytes 59", "tick"));
}

}  // namespace
}  // namespace firmlane::test
