// Both wizards in one life of the program.
#include "flow.h"

namespace firmlane::test {
namespace {

using testing::ElementsAre;

struct BothWizardsTest : FlowTest {
  BothWizardsTest() { state.PortChosen = true; }

  /// A Velarc2 with DSP and Hub versions of three digits each.
  void reportVelarc(std::array<std::int16_t, 3> dsp, std::array<std::int16_t, 3> hub) {
    state.VrcDspVer1 = dsp[0], state.VrcDspVer2 = dsp[1], state.VrcDspVer3 = dsp[2];
    state.VrcHubVer1 = hub[0], state.VrcHubVer2 = hub[1], state.VrcHubVer3 = hub[2];
  }

  FrmVRCAuto& velarc = world.frmVRCAuto;
};

TEST_F(BothWizardsTest, AWirelessRunBehindAVelarcsIsUntouchedByIt) {
  state.VrcSysFile[0] = system("7.1", "5.02", "1.1", "3.4", "");
  world.unit = [&] {
    reportVelarc({5, 0, 1}, {0, 9, 0});
    state.LegacyLink = true;  // as an old DSP has it
    state.HasRf2 = true;
  };
  world.flash = [&] { const Activity::Run run(world.activity, "VC", "NewHubFlash", [] { return true; }); };
  world.open(velarc, false, true);
  for (int press = 0; press < 4; ++press) {
    world.click(velarc.btnNext);
  }
  EXPECT_TRUE(state.FinalCheckFailed && !state.LegacyLink);
  EXPECT_EQ(
      velarc.lblMain.Caption,
      "One or more of the processors in your Velarc2 did not reprogram correctly.\r\n\r\nPlease restart the Firmlane to try "
      "again");
  EXPECT_THAT(asked(), ElementsAre("read", "flash 0", "flash 1", "read"));
  const ProcessorReport hub = world.activity.processors().at(0);
  EXPECT_EQ(hub.before + " " + hub.wanted + " " + hub.after + " " + nameOf(hub.state), "0.90 1.1 0.90 failed");
  state.LwxSysFile[0] = system("3.1", "2.31", "2.20", "1.2", "1.9");
  world.flash = [] {};
  world.unit = [&] { report(2, 30, 2, 20); };
  world.open(form, false, true);
  EXPECT_FALSE(state.FinalCheckFailed);
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

TEST_F(BothWizardsTest, AWizardThatTheUserComesBackToOwnsTheScreenAgain) {
  state.DebugView = true;
  velarc.Show();
  EXPECT_FALSE(world.frmDBUG.Visible) << "it goes with the wireless wizard";
  for (AutoForm* window : std::initializer_list<AutoForm*>{&form, &velarc, &form, &velarc}) {
    window->Show();
    world.click(window->btnNext);
    EXPECT_EQ(world.wizard.form(), window);
    world.click(window->btnBack);
    state.VersionsCompared = true;
    world.click(window->btnBack);
    EXPECT_FALSE(state.VersionsCompared) << "the next unit is another one";
  }
}

}  // namespace
}  // namespace firmlane::test
