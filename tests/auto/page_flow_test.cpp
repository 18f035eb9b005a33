// The wizards page by page over fakes: what the user sees after each press, and what was asked of the layers below.
#include "flow.h"

namespace firmlane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using PageFlowTest = FlowTest;

constexpr const char* kTurnOff = "Turn off your receiver and turn it back on to continue";

TEST_F(PageFlowTest, TheWelcomeLeadsToTheOptionsAndBackToTheMainForm) {
  form.Show();
  EXPECT_FALSE(world.form1.Visible);
  EXPECT_TRUE(state.InAutoWizard && !state.InVrcAutoWizard);
  EXPECT_EQ(form.Caption, "Tolvex Firmlane Version 5.0");
  const std::string welcome = form.lblMain.Caption;
  EXPECT_EQ(welcome,
            "There are 2 main steps in upgrading your LWX receiver:\r\r   1. Downloading firmware from Tolvex to this "
            "computer\r   2. Updating your receiver with the new firmware\r\rIf anything goes wrong during updating, dont "
            "worry, it's OK!\rYou can just start the wizard over again, your receiver will not be damaged.\r\r\nVERY "
            "IMPORTANT BEFORE CONTINUING:\r\nDipswitch #7 MUST be down (off) on your LWX receiver\r\n                       "
            "        AND\r\nOnly 1 LWX receiver can be connected to your computer");
  EXPECT_EQ(form.chkReceiver.Caption,
            "Update receiver with new firmware from this PC.  (Your receiver must be connected to this computer and your "
            "receiver must be turned on.)");
  expectPage(-1, welcome, "Back Next");
  world.click(form.btnNext);
  expectPage(0, kOptionsPage, "Back Next- Off Rec imgDL imgFlash");
  EXPECT_EQ(form.lblMain.Height, 1215);
  EXPECT_EQ(form.lblPage.Caption, "-1");
  world.click(form.chkReceiver);
  EXPECT_TRUE(form.btnNext.Enabled);
  EXPECT_TRUE(form.lblStep3.Enabled && form.lblStep7.Enabled && !form.lblStep1.Enabled);
  world.click(form.chkReceiver);
  EXPECT_FALSE(form.btnNext.Enabled);
  world.click(form.btnBack);
  expectPage(-1, form.lblMain.Caption, "Back Next");
  EXPECT_EQ(form.ChkOffline.Caption,
            "Download latest firmware from Tolvex to this PC.  (Your computer must be connected to the internet)");
  EXPECT_THAT(form.lblMain.Caption.get(), testing::HasSubstr("   2. Programming your receiver with the new firmware\r\rIf "
                                                             "anything goes wrong during programming, dont"));
  EXPECT_EQ(form.lblMain.Height, 3375);
  state.AutoDriving = true;
  world.click(form.btnBack);
  EXPECT_TRUE(world.form1.Visible && world.form1.frmFS.Visible && world.form1.imgGUI.Visible && !form.Visible);
  EXPECT_FALSE(state.AutoDriving);
  EXPECT_EQ(state.WizardPage, 0);
  EXPECT_THAT(asked(), ElementsAre("Form1 as at first"));
}

TEST_F(PageFlowTest, OnlineFromTheReadingToTheVerdict) {
  world.open(form, true, true);
  world.click(form.btnNext);
  expectPage(2, "The firmware version in your receiver is:\r\nYour version is NOT a released set", "Back Next");
  EXPECT_FALSE(world.frmVersion.Loaded);
  EXPECT_THAT(asked(), ElementsAre("ask for port", "read"));

  world.after(kSecond, [&] { EXPECT_EQ(shown(form), "Back Next- RelNote List"); });
  world.after(2 * kSecond, [&] { world.host.choose(form.VersionList, 1); });
  world.click(form.btnNext);
  expectPage(3,
             "Firmlane has received current version information from Tolvex.\r\n\r\nThe available LWX Receiver firmware "
             "versions are listed below. Please select a version to download and then click Next to continue the upgrade "
             "process.",
             "Back Next RelNote List");
  EXPECT_THAT(asked(), ElementsAre("fetch WS", "page 1 product 1", "page 2 product 1"));
  EXPECT_EQ(state.LwxSysFile[0].SystemVersion.trimmed(), "3.0");
  world.click(form.btnRelNote);
  EXPECT_THAT(asked(), ElementsAre("open /LWX/firmware/version-firmware.html"));
  ASSERT_FALSE(world.host.choose(form.VersionList, 0)) << "another pick while page 3 waits";
  world.queue.PumpEvents();

  world.click(form.btnNext);
  expectPage(4, "Download Complete!\r\r\r\r", "reset Next bar");
  EXPECT_EQ(form.lblReset.Caption, "Click Next to continue");
  EXPECT_EQ(form.lblTotal.Caption, "Overall Progress (Step 2 of 101)");
  EXPECT_EQ(form.prgTotal.Value, 1);
  EXPECT_THAT(asked(), ElementsAre("get 0 of 0", "get 1 of 0", "get 2 of 0", "get 3 of 0"));
  EXPECT_EQ(state.LwxSysFile[0].SystemVersion.trimmed(), "3.1");

  world.flash = [&] {
    EXPECT_EQ(form.lblMain.Caption, "Now programming Processor 1\r\r\r\r");
    EXPECT_EQ(form.lblReset.Caption, kTurnOff);
    EXPECT_EQ(shown(form), "reset Next- bar total lblTotal");
    EXPECT_EQ(form.lblTotal.Caption, "Overall Progress (Step 1 of 7)");
    EXPECT_EQ(state.FlashPhase, 0);
  };
  state.FlashPhase = 3;
  world.click(form.btnNext);
  expectPage(5, "Processor 1 Programmed!\r\r\r\r", "reset Next bar total lblTotal");
  EXPECT_EQ(form.lblReset.Caption, "Click Next to continue");
  EXPECT_THAT(asked(), ElementsAre("flash 0"));
  EXPECT_EQ(form.lblPage.Caption, "5");

  world.flash = [&] { EXPECT_EQ(form.Progress1.Value, 100); };
  world.click(form.btnNext);
  expectPage(6, "All Selected Processors Programmed!\r\r\r\r", "reset Next total lblTotal");
  EXPECT_THAT(asked(), ElementsAre("flash 1"));

  world.unit = [&] { report(2, 31, 2, 30); };
  world.unitAnswersAfter = 100 * kSecond;  // this wait has no limit
  world.after(kSecond, [&] {
    expectPage(6, "Waiting for receiver reset", "reset Next- total lblTotal");
    EXPECT_EQ(form.lblReset.Caption, kTurnOff);
  });
  world.click(form.btnNext);
  expectPage(19, "Programming Complete.\r\n\r\nCongratulations, you have successfully programmed your LWX receiver!\r\r",
             "More total lblTotal");
  EXPECT_EQ(form.step7.Picture, "green");
  EXPECT_EQ(form.lblTotal.Caption, "Overall Progress (Step 7 of 7)");
  EXPECT_TRUE(world.frmVersion.Loaded);
  EXPECT_THAT(world.screen.boxes(), IsEmpty());
}

TEST_F(PageFlowTest, FromDiskTheSetThereIsNamedAndTaken) {
  world.directory.write("LWXSys.lwx", "3.1       May 2026            " + std::string(100, ' ') +
                                          "2.31      2.20      1.2       1.9       D                   ");
  world.open(form, false, true);
  state.PortChosen = true;
  world.click(form.btnNext);
  expectPage(2,
             "The firmware version in your receiver is:\r\nYour version is NOT a released set\r\n\r\nThe firmware version "
             "available on your hard drive is:\r\nVersion 3.1, released May 2026",
             "Back Next");
  world.click(form.btnNext);
  expectPage(6, "All Selected Processors Programmed!\r\r\r\r", "reset Next total lblTotal");
  EXPECT_THAT(asked(), ElementsAre("read", "flash 1"));
  EXPECT_EQ(state.LwxSystems[0].SystemVersion.trimmed(), "3.1");
  EXPECT_EQ(state.SelectedSystem, 0);
}

TEST_F(PageFlowTest, AReleasedSetAndAUnitOnTheOlderLinkAreNamed) {
  state.PortChosen = true;
  state.LwxSysFile[3] = system("3.0", "2.30", "2.20", "1.20", "1.90");
  state.LwxSysFile[0] = system("3.1", "2.31", "2.30", "1.2", "1.9");
  world.open(form, false, true);
  world.click(form.btnNext);
  EXPECT_EQ(form.lblMain.Caption,
            "The firmware version in your receiver is:\r\nVersion 3.0, released May 3.0\r\n\r\nThe firmware version available "
            "on your hard drive is:\r\nVersion 3.1, released May 3.1");
  world.click(form.btnBack);
  expectPage(0, kOptionsPage, "Back Next Off Rec imgDL imgFlash");
  world.unit = [&] {
    report(2, 3, 0, 0);
    state.LegacyLink = true;
  };
  world.click(form.btnNext);
  EXPECT_EQ(form.lblMain.Caption,
            "The firmware version in your receiver is:\r\nVersion 2.30\r\n\r\nThe firmware version available on your hard "
            "drive is:\r\nVersion 2.31, released May 3.1");
  world.click(form.btnNext);
  world.unit = [&] { report(2, 31, 0, 0); };
  world.click(form.btnNext);
  expectPage(19,
             "Programming Complete.\r\n\r\nCongratulations, you have successfully programmed your LWX receiver!\r\r\r\n(Your "
             "receiver will display 'Tolvex Version 2.3' on power up)",
             "More total lblTotal");
  world.click(form.btnMore);
  EXPECT_FALSE(state.LegacyLink) << "another receiver starts on the normal link";
  EXPECT_THAT(asked(), ElementsAre("read", "read", "flash 1", "read", "read"));
}

TEST_F(PageFlowTest, ADownloadAloneNeedsNoUnitAndGoesOnWithTheReceiver) {
  world.open(form, true, false);
  world.after(2 * kSecond, [&] { world.host.choose(form.VersionList, 0); });
  world.click(form.btnNext);
  EXPECT_EQ(state.AutoPage, 3);
  world.click(form.btnNext);
  expectPage(4, "Download Complete!\r\r\r\r", "Next bar");
  world.click(form.btnNext);
  expectPage(20,
             "Firmlane has finished downloading firmware.\r\n\r\nThe downloaded firmware has been saved to your hard "
             "drive.\r\nYou can now upgrade your LWX receiver(s) at any time in the future by restarting the Firmlane and "
             "selecting the 'Update receiver with new firmware' option.\r\n\r\n                                      Or",
             "bottom Next");
  EXPECT_EQ(form.lblBottom.Caption,
            "If you would like to update the firmware in your receiver now,\r\nclick Next and select 'Update Receiver with "
            "new firmware'.");
  world.click(form.btnNext);
  expectPage(0, kOptionsPage, "Next Off Rec imgDL imgFlash");
  EXPECT_TRUE(form.chkReceiver.checked() && !form.ChkOffline.checked());
  EXPECT_THAT(asked(), ElementsAre("fetch WS", "page 1 product 1", "page 2 product 1", "get 0 of 0", "get 1 of 0", "get 2 of 0",
                                   "get 3 of 0"));
  world.click(form.btnNext);
  world.click(form.btnNext);
  EXPECT_THAT(asked(), ElementsAre("ask for port", "read", "flash 0"));
}

TEST_F(PageFlowTest, AFailedFinalCheckLeavesOnlyExit) {
  state.LwxSysFile[0] = system("3.1", "2.30", "2.30", "1.2", "1.9");
  state.PortChosen = true;
  world.open(form, false, true);
  world.click(form.btnNext);
  world.click(form.btnNext);
  world.click(form.btnNext);
  expectPage(19,
             "One or more of the processors in your receiver did not reprogram correctly.\r\n\r\nPlease restart the Firmlane "
             "to try again",
             "total lblTotal");
  EXPECT_EQ(form.step7.Picture, "red");
  EXPECT_THROW(world.click(form.cmdQuit), ProgramEnded);
}

TEST_F(PageFlowTest, ATimeOutLeadsToTheOptionsAndWhatIsLeftIsProgrammed) {
  state.LwxSysFile[0] = system("3.1", "2.31", "2.30", "1.3", "1.9");
  state.PortChosen = true;
  world.open(form, false, true);
  world.click(form.btnNext);
  world.click(form.btnNext);
  world.flash = [&] {
    state.TimedOut = true;
    form.lblMain.Caption = "what the run says";
  };
  world.click(form.btnNext);
  expectPage(20, "what the run says", "Next total lblTotal");
  world.click(form.btnNext);
  expectPage(0, kOptionsPage, "Next Off Rec imgDL imgFlash");
  world.flash = [&] { state.TimedOut = false; };
  for (int press = 0; press < 3; ++press) {
    world.click(form.btnNext);
  }
  EXPECT_EQ(state.AutoPage, 6);
  EXPECT_THAT(asked(), ElementsAre("read", "flash 0", "flash 1", "read", "flash 1", "flash 2"));
}

TEST_F(PageFlowTest, TheOnlineWayAfterATimeOutLeavesOutWhatTheUnitDoesNotHave) {
  state.PortChosen = true;
  state.VersionPicked = true;
  world.open(form, true, true);
  state.VersionsCompared = true;
  for (int press = 0; press < 7; ++press) {
    world.click(form.btnNext);
  }
  EXPECT_EQ(state.AutoPage, 6);
  EXPECT_THAT(asked(), ElementsAre("read", "fetch WS", "page 1 product 1", "page 2 product 1", "get 0 of 0", "get 1 of 0",
                                   "get 2 of 0", "get 3 of 0", "flash 0", "flash 1", "flash 2", "flash 4"));
}

struct CurrentUnitTest : PageFlowTest {
  CurrentUnitTest() {
    state.LwxSysFile[0] = system("3.1", "2.30", "2.20", "1.2", "1.9");
    state.PortChosen = true;
    world.open(form, false, true);
    world.click(form.btnNext);
  }
};

TEST_F(CurrentUnitTest, CancelEndsTheProgram) {
  world.screen.answerNext(MessageButton::Cancel);
  EXPECT_THROW(world.click(form.btnNext), ProgramEnded);
  EXPECT_EQ(world.screen.boxes()[0].text,
            "Your receiver's firmware is current.\r\n\r\nIf you would still like to re-flash your receiver, please click "
            "OK\r\n");
  EXPECT_EQ(world.screen.boxes()[0].buttons, MessageButtons::OKCancel);
}

TEST_F(CurrentUnitTest, NoStaysOnThePageAndBackLeadsToTheOptions) {
  world.screen.answerNext(MessageButton::OK);
  world.screen.answerNext(MessageButton::No);
  world.click(form.btnNext);
  EXPECT_EQ(state.AutoPage, 4);
  EXPECT_EQ(shown(form), "Back Next total lblTotal");
  EXPECT_EQ(world.screen.boxes()[1].text, "Are you sure you want to reprogram your receiver? The firmware in it is current!");
  world.click(form.btnBack);
  expectPage(0, kOptionsPage, "Back Next Off Rec imgDL imgFlash");
  world.unit = [&] { report(2, 20, 2, 20); };
  world.click(form.btnNext);
  world.click(form.btnNext);
  EXPECT_THAT(asked(), ElementsAre("read", "read", "flash 1")) << "another unit is compared anew";
}

TEST_F(CurrentUnitTest, YesProgramsAllThatTheUnitHas) {
  world.screen.answerNext(MessageButton::OK);
  world.screen.answerNext(MessageButton::Yes);
  for (int press = 0; press < 4; ++press) {
    world.click(form.btnNext);
  }
  EXPECT_EQ(form.lblTotal.Caption, "Overall Progress (Step 1 of 9)");
  EXPECT_EQ(state.AutoPage, 6);
  EXPECT_THAT(asked(), ElementsAre("read", "flash 0", "flash 1", "flash 2", "flash 4"));
}

TEST_F(PageFlowTest, AnotherReceiverIsReadAndComparedAnewAndNothingOfTheLastOneStays) {
  state.LwxSysFile[0] = system("3.1", "2.31", "2.30", "1.2", "1.9");
  state.PortChosen = true;
  world.open(form, false, true);
  world.unit = [&] {
    report(2, 31, 2, 20);
    state.HasRf2 = true;  // 0.00, so behind
  };
  world.click(form.btnNext);
  world.click(form.btnNext);
  world.click(form.btnNext);
  world.unit = [&] {
    report(2, 31, 2, 30);
    state.VerRf2Major = 1, state.VerRf2Minor = 2;
  };
  world.click(form.btnNext);
  EXPECT_EQ(asked().size(), 4U);
  ASSERT_EQ(shown(form), "More total lblTotal");
  world.unit = [&] { report(2, 20, 2, 30); };
  world.click(form.btnMore);
  EXPECT_EQ(state.AutoPage, 2);
  EXPECT_EQ(shown(form), "Next");
  EXPECT_FALSE(state.HasRf2);
  world.click(form.btnNext);
  EXPECT_EQ(form.lblTotal.Caption, "Overall Progress (Step 1 of 4)");
  EXPECT_THAT(asked(), ElementsAre("read", "flash 1"));
}

}  // namespace
}  // namespace firmlane::test
