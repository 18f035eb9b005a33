// What the Velarc2's wizard does in its own way.
#include "flow.h"

namespace firmlane::test {
namespace {

using testing::ElementsAre;

struct Velarc2Test : FlowTest {
  Velarc2Test() { state.PortChosen = true; }

  /// A Velarc2 with DSP and Hub versions of three digits each.
  void reportVelarc(std::array<std::int16_t, 3> dsp, std::array<std::int16_t, 3> hub) {
    state.VrcDspVer1 = dsp[0], state.VrcDspVer2 = dsp[1], state.VrcDspVer3 = dsp[2];
    state.VrcHubVer1 = hub[0], state.VrcHubVer2 = hub[1], state.VrcHubVer3 = hub[2];
  }
  void expectVelarc(int page, const std::string& main, const std::string& controls) {
    EXPECT_EQ(state.AutoPage, page);
    EXPECT_EQ(velarc.lblMain.Caption, main);
    EXPECT_EQ(shown(velarc), controls);
  }

  FrmVRCAuto& velarc = world.frmVRCAuto;
};

TEST_F(Velarc2Test, OnlineFromTheWelcomeToTheVerdict) {
  world.open(velarc, true, true);
  EXPECT_TRUE(state.InAutoWizard && state.InVrcAutoWizard);
  EXPECT_EQ(velarc.chkReceiver.Caption,
            "Update Velarc2 with new firmware from this PC.  (Your Velarc must be connected to this computer and your Velarc2 "
            "must be turned on.)");
  world.unit = [&] {
    reportVelarc({5, 0, 1}, {1, 0, 0});
    state.LegacyLink = true;
  };
  world.click(velarc.btnNext);
  expectVelarc(2, "The firmware version in your Velarc2 is:\r\nYour version is NOT a released set", "Back Next");
  EXPECT_FALSE(state.LegacyLink);
  world.after(2 * kSecond, [&] { world.host.choose(velarc.VersionList, 0); });
  world.click(velarc.btnNext);
  expectVelarc(3,
               "Firmlane has received current version information from Tolvex.\r\n\r\nThe available Velarc2 firmware versions "
               "are listed below. Please select a version to download and then click Next to continue the upgrade process.",
               "Back Next RelNote List");
  world.click(velarc.btnRelNote);
  world.click(velarc.btnNext);
  EXPECT_THAT(asked(), ElementsAre("read", "fetch VC", "page 1 product 1", "page 2 product 1",
                                   "open /Velarc/Firmware/version.html", "get 0 of 0", "get 1 of 0", "get 2 of 0"));
  world.click(velarc.btnNext);
  EXPECT_EQ(velarc.lblTotal.Caption, "Overall Progress (Step 1 of 7)");
  world.click(velarc.btnNext);
  expectVelarc(6, "All Selected Processors Programmed!\r\r\r\r", "reset Next total lblTotal");
  world.unit = [&] { reportVelarc({5, 0, 2}, {1, 2, 0}); };
  world.after(100 * kMillisecond, [&] {
    EXPECT_EQ(velarc.lblMain.Caption, "Waiting for Velarc2 reset");
    EXPECT_EQ(velarc.lblReset.Caption, "Turn off your Velarc2 and turn it back on to continue");
  });
  world.click(velarc.btnNext);
  expectVelarc(19, "Programming Complete.\r\n\r\nCongratulations, you have successfully programmed your Velarc2!\r\r",
               "More total lblTotal");
  EXPECT_THAT(asked(), ElementsAre("flash 0", "flash 1", "read"));
  EXPECT_TRUE(world.directory.has("VRC2Sys.vrc") && !world.directory.has("LWXSys.lwx"));
}

TEST_F(Velarc2Test, ADspBelowFiveIsProgrammedAlsoBehindAUnitThatWasNewer) {
  state.VrcSysFile[0] = system("7.1", "5.02", "1.1", "3.4", "");
  world.open(velarc, false, true);
  world.unit = [&] { reportVelarc({5, 0, 2}, {1, 0, 0}); };
  world.click(velarc.btnNext);
  world.click(velarc.btnBack);
  world.unit = [&] {
    reportVelarc({3, 103, 0}, {1, 1, 0});
    state.VrcOldDsp = true;
    state.LegacyLink = true;
  };
  world.click(velarc.btnNext);
  EXPECT_EQ(velarc.lblMain.Caption,
            "The firmware version in your Velarc2 is:\r\nYour version is NOT a released set\r\n\r\nThe firmware version "
            "available on your hard drive is:\r\nVersion 7.1, released May 7.1");
  world.click(velarc.btnNext);
  EXPECT_EQ(state.AutoPage, 6);
  // The final check meets the old DSP again, on a unit that was not programmed after all.
  world.click(velarc.btnNext);
  expectVelarc(19,
               "One or more of the processors in your Velarc2 did not reprogram correctly.\r\n\r\nPlease restart the Firmlane "
               "to try again",
               "total lblTotal");
  EXPECT_THAT(asked(), ElementsAre("read", "read", "flash 1", "read"));
}

TEST_F(Velarc2Test, ACurrentUnitIsAskedAboutBeforeTheOverallBarComesUp) {
  state.VrcSysFile[0] = system("7.1", "5.02", "1.1", "3.4", "");
  world.unit = [&] { reportVelarc({5, 0, 2}, {1, 1, 0}); };
  world.open(velarc, false, true);
  world.click(velarc.btnNext);
  world.screen.onBox = [&](const MessageBox&) { EXPECT_FALSE(velarc.prgTotal.Visible); };
  world.screen.answerNext(MessageButton::OK);
  world.screen.answerNext(MessageButton::Yes);
  world.click(velarc.btnNext);
  expectVelarc(5, "Processor 1 Programmed!\r\r\r\r", "reset Next bar total lblTotal");
  ASSERT_EQ(world.screen.boxes().size(), 2U);
  EXPECT_EQ(world.screen.boxes()[0].text,
            "Your Velarc2's firmware is current.\r\n\r\nIf you would still like to re-flash your Velarc2, please click OK\r\n");
  EXPECT_EQ(world.screen.boxes()[1].text, "Are you sure you want to reprogram your Velarc2? The firmware in it is current!");
  world.click(velarc.btnNext);
  EXPECT_EQ(state.AutoPage, 6);
}

TEST_F(Velarc2Test, RecoveryTakesHubAndDsp) {
  world.unit = nullptr;
  world.open(velarc, false, true);
  world.after(31 * kSecond, [&] {
    EXPECT_EQ(world.frmRecover.lblMain.Caption,
              "Unable to connect to your Velarc2\r\n\r\nPlease check your connections and COM port and make sure your Velarc2 "
              "is turned on.\r\n\r\nIf you are still unable to connect, click the 'Recover' button.\r\nUse this option if you "
              "think that the firmware in your Velarc2 may be corrupt.");
    world.host.click(world.frmRecover.btnRecover);
  });
  world.click(velarc.btnNext);
  world.click(velarc.btnNext);
  EXPECT_EQ(state.AutoPage, 6);
  EXPECT_THAT(asked(), ElementsAre("read", "flash 0", "flash 1"));
}

TEST_F(Velarc2Test, AWirelessRunBehindAVelarcsIsUntouchedByIt) {
  state.VrcSysFile[0] = system("7.1", "5.02", "1.1", "3.4", "");
  world.unit = [&] {
    reportVelarc({5, 0, 1}, {1, 0, 0});
    state.HasRf2 = true;
  };
  world.open(velarc, false, true);
  for (int press = 0; press < 4; ++press) {
    world.click(velarc.btnNext);
  }
  EXPECT_TRUE(state.FinalCheckFailed);
  EXPECT_THAT(asked(), ElementsAre("read", "flash 0", "flash 1", "read"));
  state.LwxSysFile[0] = system("3.1", "2.31", "2.20", "1.2", "1.9");
  world.unit = [&] { report(2, 30, 2, 20); };
  world.open(form, false, true);
  EXPECT_EQ(world.wizard.form(), &form);
  for (int press = 0; press < 2; ++press) {
    world.click(form.btnNext);
  }
  EXPECT_EQ(form.lblTotal.Caption, "Overall Progress (Step 1 of 4)");
  world.unit = [&] { report(2, 31, 2, 20); };
  world.click(form.btnNext);
  EXPECT_TRUE(form.btnMore.Visible);
  EXPECT_THAT(asked(), ElementsAre("read", "flash 1", "read"));
}

TEST_F(Velarc2Test, AWizardThatTheUserComesBackToOwnsTheScreenAgain) {
  for (AutoForm* window : std::initializer_list<AutoForm*>{&form, &velarc, &form, &velarc}) {
    window->Show();
    world.click(window->btnNext);
    EXPECT_EQ(world.wizard.form(), window);
    world.click(window->btnBack);
    world.click(window->btnBack);
  }
}

TEST_F(Velarc2Test, BackShowsTheWelcomeInItsOtherWords) {
  world.open(velarc, true, false);
  world.click(velarc.btnBack);
  EXPECT_EQ(velarc.lblMain.Caption,
            "There are 2 main steps in upgrading your Velarc2\r\r   1. Downloading firmware from Tolvex to this computer\r   "
            "2. Programming your Velarc2 with the new firmware\r\rIf anything goes wrong during programming, dont worry, it's "
            "OK!\rYou can just start the wizard over again, your Velarc2 will not be damaged.\r");
  EXPECT_EQ(velarc.chkReceiver.Caption,
            "Update Velarc2 with new firmware from this PC.  (Your Velarc2 must be connected to this computer and your Velarc2 "
            "must be turned on)");
}

TEST_F(Velarc2Test, TheServiceButtonsProgramOneProcessorEach) {
  velarc.Load();
  struct Service {
    CommandButton& button;
    const char* run;
    const char* processor;
    const char* done;
  };
  const Service services[] = {
      {velarc.btnHUB, "flash 0", "Now programming Processor 1\r\r\r\r", "HUB Programming Complete"},
      {velarc.btnDSP, "flash 1", "Now programming Processor 2\r\r\r\r", "DSP Programming Complete"},
      {velarc.btnF1, "flash 2", "Now programming Processor 3\r\r\r\r", "Front A Programming Complete"},
      {velarc.btnF2, "flash 3", "Now programming Processor 4\r\r\r\r", "Front B Programming Complete"},
  };
  for (const Service& service : services) {
    EXPECT_FALSE(service.button.Visible);
    service.button.Click();
    EXPECT_THAT(asked(), ElementsAre(service.run));
    EXPECT_EQ(velarc.lblMain.Caption, service.processor);
    EXPECT_EQ(velarc.lblReset.Caption, service.done);
    EXPECT_EQ(state.ComPort, 1);
  }
  world.flash = [&] {
    velarc.lblReset.Caption = "failed";
    state.TimedOut = true;
  };
  velarc.btnHUB.Click();
  EXPECT_EQ(velarc.lblReset.Caption, "failed");
}

}  // namespace
}  // namespace firmlane::test
