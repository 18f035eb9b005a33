#include "classic_fixture.h"

namespace firmlane::test {
namespace {

class StartTest : public ClassicTest {};

TEST_F(StartTest, ThePageOfTheStartComesWhateverStoodThere) {
  state_.WizardPage = 7;
  state_.CatalogueReady = state_.InHouseBuild = state_.DebugView = true;
  state_.FactoryFirstPass = false;
  receive_.RxBuffer = bytes("02 00 1F");
  receive_.FrameLength = {};
  receive_.RxSearchStart = 5;
  form1_.lblTop.Hide();
  form1_.frmUC.Show();
  for (int i = 0; i <= 2; ++i) {
    form1_.Option1(i).Value = true;
    form1_.Option1(i).Show();
  }
  form1_.Watchdog.start(100);
  form1_.Timer1.start(100);
  form1_.OnLoad();
  EXPECT_TRUE(form1_.lblTop.Visible && form1_.Option1(0).Value && !form1_.frmUC.Visible);
  EXPECT_FALSE(form1_.Option1(0).Visible || form1_.Option1(1).Visible || form1_.Option1(2).Visible || form1_.Option1(3).Visible);
  EXPECT_FALSE(form1_.Watchdog.enabled() || form1_.Timer1.enabled());
  EXPECT_EQ(state_.WizardPage, -2);
  EXPECT_FALSE(state_.CatalogueReady || state_.InHouseBuild || state_.DebugView || !state_.FactoryFirstPass);
  EXPECT_TRUE(receive_.RxBuffer.empty());
  EXPECT_EQ(receive_.RxSearchStart, 1);
  EXPECT_EQ(receive_.FrameLength[31], 8) << "no report of a boot loader would ever be complete";
}

TEST_F(StartTest, QuittingAsksAndCancelLeavesAllAsItWas) {
  world_.wires.add(1);
  world_.mainPort.Open();
  world_.screen.answerNext(MessageButton::Cancel);
  click(form1_.Command2);
  EXPECT_TRUE(world_.mainPort.IsOpen());
  EXPECT_TRUE(form1_.Visible);
  EXPECT_EQ(world_.screen.boxes().back().text, "Quit Tolvex Firmlane Now?");
  EXPECT_EQ(world_.screen.boxes().back().title, "Warning");

  world_.screen.answerNext(MessageButton::OK);
  EXPECT_EQ(world_.host.close(form1_), std::nullopt);
  EXPECT_THROW(world_.queue.PumpEvents(), ProgramEnded);
  EXPECT_FALSE(world_.mainPort.IsOpen());
}

}  // namespace
}  // namespace firmlane::test
