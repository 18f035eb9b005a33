#include "classic_fixture.h"

namespace firmlane::test {
namespace {

using testing::ElementsAre;

class StartTest : public ClassicTest {};

TEST_F(StartTest, TheWelcomePageStandsWithItsTextAndTitle) {
  EXPECT_EQ(form1_.Caption.get(), "Tolvex Firmlane Version 5.0");
  EXPECT_EQ(form1_.lblTop.Caption.get(),
            "Welcome to the Tolvex Firmlane\r\n\r\nUse this Wizard to:\r\n\r\n"
            "- Download the latest Vel-Arc or LWX remote control software\r\n"
            "   (The remote control software that runs on your computer)\r\n\r\n"
            "                                          OR \r\n\r\n"
            "- Download the latest Vel-Arc or LWX receiver firmware\r\n"
            "   (The internal operating system of your Vel-Arc or LWX300/500 receiver)\r\n\r\n"
            "                                          OR \r\n\r\n"
            "- Update your Vel-Arc or LWX receiver with the latest firmware\r\n"
            "   (Copy firmware from your computer to the Tolvex product)");
  EXPECT_EQ(receive_.FrameLength[31], 8) << "no report of a boot loader would ever be complete";
  EXPECT_EQ(state_.WizardPage, -2);
}

TEST_F(StartTest, TheFirstNextOffersThreeProductsAndWaitsForOne) {
  next();
  EXPECT_EQ(form1_.lblTop.Caption.get(), "Please select the product you would like to upgrade:");
  EXPECT_TRUE(form1_.VRCButton.Visible && form1_.VRColdButton.Visible && form1_.LWXButton.Visible);
  EXPECT_FALSE(form1_.LWX300Button.Visible);
  EXPECT_FALSE(form1_.lblFAQ.Visible);
  EXPECT_EQ(world_.host.click(form1_.Command3), "not enabled");
}

TEST_F(StartTest, EachProductButtonLeadsToItsChoiceOfTask) {
  struct Case {
    CommandButton Form1::*button;
    const char* product;
    bool older;
    const char* firmware;
    const char* software;
    const char* picture;  // of Image2
    const char* guiPicture;
  };
  const std::string firmwareAtStart = form1_.Option5.Caption;
  for (const Case& c : {Case{&Form1::VRCButton, "VC", false, "Upgrade Velarc firmware", "Upgrade Velarc remote control software",
                             "Image2", "VRCGui"},
                        Case{&Form1::VRColdButton, "VC", true, "Upgrade Firmware", "Upgrade Remote Software", "Image2", "VRCGui"},
                        Case{&Form1::LWXButton, "WS", false, "Upgrade LWX300/500 Receiver firmware",
                             "Upgrade LWX300/500 Remote control software", "lwxpic", "imgGUI"},
                        Case{&Form1::LWX300Button, "WS", false, "Upgrade LWX300 Receiver firmware",
                             "Upgrade LWX300 Remote control software", "lwxpic", "imgGUI"}}) {
    SCOPED_TRACE((form1_.*c.button).name());
    form1_.Loaded = false;
    form1_.Show();
    state_ = {};
    state_.WizardPage = -2;
    next();
    (form1_.*c.button).Show();
    click(form1_.*c.button);
    EXPECT_EQ(state_.ProductCode, c.product);
    EXPECT_EQ(state_.OldVelarc, c.older);
    EXPECT_EQ(state_.LegacyLink, c.older);
    EXPECT_EQ(form1_.Option5.Caption.get(), c.firmware);
    EXPECT_EQ(form1_.Option6.Caption.get(), c.software);
    EXPECT_EQ(form1_.Image2.Picture.get(), c.picture);
    EXPECT_EQ(form1_.imgGUI.Picture.get(), c.guiPicture);
    EXPECT_EQ(form1_.frmFS.Visible, !c.older);
    EXPECT_EQ(form1_.imgLWX.Visible, !c.older);
    EXPECT_EQ(form1_.Option1(2).Visible, c.older);
    EXPECT_FALSE(form1_.Option1(3).Visible);
    EXPECT_FALSE((form1_.*c.button).Visible);
    EXPECT_TRUE(form1_.Command3.Enabled);
    EXPECT_EQ(form1_.lblTop.Caption.get(), "What would you like to do?");
    EXPECT_EQ(state_.WizardPage, 0);
  }
}

TEST_F(StartTest, PicturesSelectWhatTheyShow) {
  next();
  click(form1_.LWXButton);
  click(form1_.imgGUI);
  EXPECT_TRUE(form1_.Option6.Value);
  EXPECT_FALSE(form1_.Option5.Value);
  click(form1_.imgLWX);
  EXPECT_TRUE(form1_.Option5.Value);
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

class FactoryStartTest : public ClassicTest {
 protected:
  FactoryStartTest() : ClassicTest({.factoryBuild = true}) {}
};

TEST_F(FactoryStartTest, TheFirstNextGoesStraightToTheProductionPath) {
  EXPECT_TRUE(form1_.btnSN.Visible);
  state_.SerialOnly = true;
  next();
  EXPECT_FALSE(state_.SerialOnly);
  EXPECT_EQ(state_.ProductCode, "WS");
  EXPECT_EQ(state_.WizardPage, 5);
  EXPECT_EQ(form1_.lblTop.Caption.get(), "If you are ready to Update the firmware in your receiver now, click on Next\r\r");
  EXPECT_FALSE(world_.frmAuto.Visible);
}

TEST_F(FactoryStartTest, ThePageAfterTheDspRunBelongsToTheSerialNumberUntilItIsFinished) {
  next();
  state_.FlashTarget = "DSPFlash";
  state_.WizardPage = 7;
  world_.supervision.BarValue = 40;
  form1_.ProgressBar1.Show();
  for (int step = 1; step <= 4; ++step) {
    next();
    EXPECT_EQ(state_.SerialStep, step);
    EXPECT_FALSE(form1_.ProgressBar1.Visible);
  }
  next();
  EXPECT_EQ(state_.SerialStep, 4);
  EXPECT_THAT(log_, ElementsAre("serial number"));
  EXPECT_EQ(world_.mainPort.lineSettings().baud, 57600);

  state_.SerialStep = 5;
  state_.GotId = true;
  receive_.PresetLoaded = true;
  preset_.PresetPending = true;
  next();
  EXPECT_EQ(form1_.lblTop.Caption.get(), "Serial Number and Preset Load Complete");
  EXPECT_EQ(state_.WizardPage, 0);
  EXPECT_EQ(state_.SerialStep, 0);
  EXPECT_FALSE(state_.GotId || receive_.PresetLoaded || preset_.PresetPending);
  EXPECT_EQ(world_.supervision.BarValue, 0);
  next();
  EXPECT_EQ(state_.WizardPage, 5) << "the next unit starts on the same path";
}

}  // namespace
}  // namespace firmlane::test
