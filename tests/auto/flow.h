// A wizard over fakes with a unit that answers, a list of two systems and flash runs that succeed, unless a test says otherwise.
#pragma once

#include <gmock/gmock.h>

#include <utility>

#include "wizard_bench.h"

namespace firmlane::test {

inline constexpr const char* kOptionsPage = "Please select from the two options below\r\r";

struct Flow {
  Flow() {
    world.unit = [this] { report(2, 30, 2, 20); };
    world.fetched = [this] {
      state.LwxSystems[0] = system("3.1", "2.31", "2.30", "1.2", "1.9");
      state.LwxSystems[1] = system("3.0", "2.30", "2.20", "1.1", "1.8");
      state.VrcSystems[0] = system("7.1", "5.02", "1.1", "3.4", "");
      state.VrcSystems[1] = system("7.0", "5.01", "1.0", "3.3", "");
      state.SystemCount = 1;
      state.CatalogueReady = true;
      world.form1.List1.Lines = {"D V2.31-x", "H V2.30-x", "R V1.2-x", "F V1.9-x"};
    };
    world.flash = [this] { state.TimedOut = false; };
  }

  /// A receiver with these DSP and Hub versions, RF 1.20 and Front 1.90.
  void report(int dspMajor, int dspMinor, int hubMajor, int hubMinor) {
    state.VerDspMajor = static_cast<std::int16_t>(dspMajor);
    state.VerDspMinor = static_cast<std::int16_t>(dspMinor);
    state.VerHubMajor = static_cast<std::int16_t>(hubMajor);
    state.VerHubMinor = static_cast<std::int16_t>(hubMinor);
    state.VerRf1Major = 1, state.VerRf1Minor = 2;
    state.VerFrontMajor = 1, state.VerFrontMinor = 9;
  }
  /// What stands on the window after a press.
  void expectPage(int page, const std::string& main, const std::string& controls) {
    EXPECT_EQ(state.AutoPage, page);
    EXPECT_EQ(form.lblMain.Caption, main);
    EXPECT_EQ(shown(form), controls);
  }
  /// What was asked of the layers below since the last time.
  std::vector<std::string> asked() { return std::exchange(world.log, {}); }

  WizardBench world;
  RunState& state = world.state;
  FrmAuto& form = world.frmAuto;
};

struct FlowTest : testing::Test, Flow {};

}  // namespace firmlane::test
