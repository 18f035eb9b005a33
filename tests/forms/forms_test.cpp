#include <gtest/gtest.h>

#include "forms/about_box.h"
#include "forms/counter1.h"
#include "forms/debug_view.h"
#include "forms/in_house_panel.h"
#include "world.h"

namespace firmlane::test {
namespace {

TEST(AboutBox, TellsTheVersionBesideTheMainForm) {
  World world;
  AboutBox box(world.frmAbout, world.form1);
  world.form1.Left = 700;
  world.form1.Top = 300;
  world.frmAbout.Show();
  EXPECT_EQ(world.frmAbout.lblVersion.Caption.get(), "LWX Firmlane Version 5.0 Build 9");
  EXPECT_EQ(world.frmAbout.lblCopyright.Caption.get(), "Copyright (c) 2026 the Firmlane authors");
  EXPECT_EQ(world.frmAbout.Left.get(), 700);
  EXPECT_EQ(world.frmAbout.Top.get(), 300);
  world.frmAbout.Command1.Click();
  EXPECT_FALSE(world.frmAbout.Loaded);
}

TEST(DebugView, StandsLeftOfTheMainForm) {
  World world;
  DebugView view(world.frmDBUG, world.form1);
  world.form1.Left = 5000;
  world.form1.Top = 300;
  world.form1.Width = 9000;
  world.frmDBUG.Show();
  EXPECT_EQ(world.frmDBUG.Left.get(), 5000 - 3600);
  EXPECT_EQ(world.frmDBUG.Top.get(), 300);
}

TEST(Counter1, ShowsTheDigitsOfItsNumberAndNeverLooksOutsideItsPictures) {
  struct Case {
    std::int16_t value;
    const char* shown;
  };
  for (const Case& c :
       {Case{0, "0"}, {7, "7"}, {10, "10"}, {42, "42"}, {99, "99"}, {100, "100"}, {109, "100"}, {32767, "100"}, {-32768, "0"}}) {
    Counter1 counter;
    counter.SetBigdigits(c.value);
    std::string shown;
    for (const Counter1::ImageHolder* holder : {&counter.imgCount2, &counter.imgCount1, &counter.imgCount0}) {
      shown += holder->Visible ? holder->Picture.back() : '\0';
    }
    std::erase(shown, '\0');
    EXPECT_EQ(shown, c.shown) << c.value;
  }
}

class InHousePanelTest : public testing::Test {
 protected:
  World world_;
  std::string asked_;
  std::optional<Failure> failure_;
  std::string outcome_;
  InHousePanel panel_{[this] {
                        for (const CheckBox* check : world_.frmAuto.checks()) {
                          asked_ += check->checked() ? check->name() : "";
                        }
                        asked_ += " COM" + std::to_string(world_.state.ComPort) + " " + world_.state.ProductCode;
                        EXPECT_FALSE(world_.frmInHouse.Command1.Enabled);
                        if (!outcome_.empty()) {
                          world_.form1.lblOutcome.tell(OutcomeKind::Good, outcome_);
                        }
                        if (failure_) {
                          throw Failure(*failure_);
                        }
                      },
                      world_.state, world_.form1, world_.frmAuto, world_.frmInHouse};
};

TEST_F(InHousePanelTest, ProgramsTheChosenProcessorAlone) {
  world_.frmInHouse.Show();
  const char* expected[] = {"Check2", "Check1", "Check3", "Check4", "Check5", ""};
  for (int i = 0; i < world_.frmInHouse.optUP.count(); ++i) {
    asked_.clear();
    world_.frmInHouse.optUP(i).Value = true;
    world_.frmInHouse.Command1.Click();  // the stand-in leaves the box checked, as a failed run does
    EXPECT_EQ(asked_, expected[i] + std::string(" COM2 WS"));
  }
}

TEST_F(InHousePanelTest, TellsHowTheRunEndedAndClaimsNoneThatWasNot) {
  world_.frmInHouse.Show();
  world_.form1.lblTop.Caption = "the last page";
  for (const auto& [outcome, panelSays] :
       {std::pair{"Congratulations!\r\rClick Next to continue or click Exit to quit", "Congratulations!"},
        {"", "No processor was programmed."},
        {"There is no serial port COM 2", "There is no serial port COM 2"}}) {
    outcome_ = outcome;
    world_.frmInHouse.Command1.Click();
    EXPECT_EQ(world_.frmInHouse.Label1.Caption.get(), std::string(panelSays) + "\r\rWhat would you like to do?");
  }
}

TEST_F(InHousePanelTest, AFailureIsToldAndThePanelStaysUsable) {
  world_.frmInHouse.Show();
  failure_ = Failure(8005, "The port is in use");
  world_.screen.answerNext(MessageButton::OK);
  world_.frmInHouse.Command1.Click();
  EXPECT_EQ(world_.screen.boxes().at(0).text, "Error: The port is in use (#8005)");
  EXPECT_TRUE(world_.frmInHouse.Command1.Enabled);
}

TEST_F(InHousePanelTest, ClosingThePanelAsksForTheEndOfTheProgram) {
  world_.frmInHouse.Show();
  int asked = 0;
  world_.form1.OnQueryUnload = [&](bool& cancel) { cancel = ++asked == 1; };
  world_.form1.OnUnload = [] { throw ProgramEnded{}; };
  world_.frmInHouse.Unload();
  EXPECT_TRUE(world_.frmInHouse.Visible);
  EXPECT_THROW(world_.frmInHouse.Unload(), ProgramEnded);
}

}  // namespace
}  // namespace firmlane::test
