#include <gmock/gmock.h>

#include "wizard_bench.h"

namespace firmlane::test {
namespace {

using testing::ElementsAre;

struct TableTest : testing::Test {
  TableTest() {
    world.frmAuto.Load();
    world.frmVRCAuto.Load();
  }

  /// A version as the two numbers of the wireless line.
  static void set(std::int16_t& major, std::int16_t& minor, int majorValue, int minorValue) {
    major = static_cast<std::int16_t>(majorValue);
    minor = static_cast<std::int16_t>(minorValue);
  }
  std::string selections(AutoForm& form) {
    std::string text;
    for (CheckBox* check : form.checks()) {
      text += check->checked() ? '1' : '0';
    }
    return text;
  }

  WizardBench world;
  RunState& state = world.state;
  WizardWindow receiver = wirelessWindow(world.frmAuto);
  WizardWindow velarc = velarc2Window(world.frmVRCAuto);
  OverallProgress progress{state, receiver, wirelessParameters()};
  OverallProgress velarcProgress{state, velarc, velarc2Parameters()};
  VersionTable table{world.setting, receiver, progress, wirelessParameters()};
  VersionTable velarcTable{world.setting, velarc, velarcProgress, velarc2Parameters()};
};

TEST_F(TableTest, VersionsOfAReceiverReadAsDigitsBehindThePoint) {
  set(state.VerDspMajor, state.VerDspMinor, 2, 3);
  set(state.VerHubMajor, state.VerHubMinor, 2, 12);
  set(state.VerRf1Major, state.VerRf1Minor, 1, 5);
  set(state.VerRf2Major, state.VerRf2Minor, 0, 7);
  set(state.VerFrontMajor, state.VerFrontMinor, 10, 100);
  state.HasRf2 = true;
  table.LoadVersions();
  FrmAuto& form = world.frmAuto;
  EXPECT_THAT(
      (std::vector<std::string>{form.DSP1.Caption, form.HUB1.Caption, form.RF1.Caption, form.RF2.Caption, form.LCD1.Caption}),
      ElementsAre("2.30", "2.12", "1.50", "0.70", "10.10"));
  state.HasRf2 = false;
  table.LoadVersions();
  EXPECT_EQ(form.RF2.Caption, "N/A");
  EXPECT_FALSE(form.Check4.Enabled);
}

TEST_F(TableTest, VersionsOfAVelarcReadAsThreeDigitsAndAnOldDspIsLeftAlone) {
  state.VrcDspVer1 = 5, state.VrcDspVer2 = 0, state.VrcDspVer3 = 2;
  state.VrcHubVer1 = 1, state.VrcHubVer2 = 1, state.VrcHubVer3 = 0;
  state.VrcFrontAVer1 = 3, state.VrcFrontAVer2 = 4, state.VrcFrontAVer3 = 5;
  state.VrcFrontBVer1 = 6, state.VrcFrontBVer2 = 7, state.VrcFrontBVer3 = 8;
  state.HasRf2 = true;
  velarcTable.ClearVersions();
  velarcTable.LoadVersions();
  FrmVRCAuto& form = world.frmVRCAuto;
  EXPECT_THAT((std::vector<std::string>{form.DSP1.Caption, form.HUB1.Caption, form.Front1.Caption, form.Front2.Caption,
                                        form.LCD1.Caption}),
              ElementsAre("5.02", "1.10", "3.45", "6.78", "0.00"));
  state.VrcOldDsp = true;
  state.HasRf2 = false;
  velarcTable.ClearVersions();
  velarcTable.LoadVersions();
  EXPECT_EQ(form.DSP1.Caption, "0.00");
  EXPECT_EQ(form.Front2.Caption, "N/A");
}

TEST_F(TableTest, DisplayNamesAndRecordsFillTheCurrentColumn) {
  FrmAuto& form = world.frmAuto;
  const auto current = [&form] {
    return std::vector<std::string>{form.DSPC.Caption, form.HUBC.Caption, form.RFC.Caption, form.RF2C.Caption, form.LCDC.Caption};
  };
  table.ParseVersions();
  EXPECT_THAT(current(), ElementsAre("0.0", "0.0", "0.0", "0.0", "0.0")) << "an empty list changes nothing";
  world.form1.List1.Lines = {"DSP V1.05-May", "Hub V1.5 -x", "RF V2-y", "Front V10.251-z"};
  table.ParseVersions();
  EXPECT_THAT(current(), ElementsAre("1.05", "1.50", "2.00", "2.00", "10.25"));
  state.LwxSystems[2] = system("3", "2.3", "2.31", "1.2", "1.9");
  state.SelectedSystem = 2;
  table.ParseVersionsSys();
  EXPECT_THAT(current(), ElementsAre("2.3", "2.31", "1.2", "1.2", "1.9"));
  EXPECT_THAT(world.screen.boxes(), ElementsAre());

  state.VrcSystems[2] = system("3", "5.02", "1.1", "3.4", "");
  velarcTable.ParseVersionsSys();
  FrmVRCAuto& vrc = world.frmVRCAuto;
  EXPECT_THAT(
      (std::vector<std::string>{vrc.DSPC.Caption, vrc.HUBC.Caption, vrc.Front1C.Caption, vrc.Front2C.Caption, vrc.LCDC.Caption}),
      ElementsAre("5.02", "1.1", "3.4", "3.4", "0.0"));
}

TEST_F(TableTest, UnreadableDisplayNamesAreToldAndTheRestGoesOn) {
  world.screen.answerOthers();
  world.frmAuto.HUBC.Caption = "";
  world.form1.List1.Lines = {"DSP V1.05-May", "Hub V-"};
  table.ParseVersions();
  EXPECT_EQ(world.frmAuto.DSPC.Caption.get() + " " + world.frmAuto.HUBC.Caption.get(), "1.05 0.00");
  world.form1.List1.Lines = std::vector<std::string>(11, "X V1-y");
  table.ParseVersions();
  EXPECT_EQ(world.screen.boxes().size(), 1U);
  world.form1.List1.AddItem("X V1-y");
  table.ParseVersions();
  velarcTable.ParseVersions();
  for (const char* name : {"Hub 1.5-x", "Hub V1.5"}) {
    world.form1.List1.Lines = {"V1.06-May", name, "R V1.2-x", "F V1.9-x"};
    table.ParseVersions();
    EXPECT_EQ(world.frmAuto.DSPC.Caption, "1.06") << "the word before the version may be missing";
  }
  ASSERT_EQ(world.screen.boxes().size(), 5U);
  EXPECT_EQ(world.screen.boxes()[0].text, "Error reading LWX firmware versions. Please try again");
  EXPECT_EQ(world.screen.boxes()[1].text, "Error reading LWX firmware versions. Please try again");
  EXPECT_EQ(world.screen.boxes()[2].text, "Error reading Velarc2 firmware versions. Please try again");
}

TEST_F(TableTest, TheListHasALineForEachSystemOfTheUpdateList) {
  for (const auto& [last, lines] : {std::pair{0, 1}, {10, 11}, {11, 11}}) {
    state.SystemCount = static_cast<std::int16_t>(last);
    table.LoadVersionList();
    EXPECT_EQ(world.frmAuto.VersionList.ListCount(), lines);
  }
}

TEST_F(TableTest, TheWholeTableCanBeShown) {
  FrmAuto& form = world.frmAuto;
  std::vector<Control*> shown = {&form.Label2,  &form.Label3,  &form.Label4,  &form.Label5,     &form.Label6, &form.Label8,
                                 &form.Label10, &form.Label11, &form.Label14, &form.btnDetails, &form.Shape1, &form.Shape5};
  for (const VersionRow& row : receiver.rows) {
    shown.insert(shown.end(), {&row.current, &row.inUnit, &row.selection});
  }
  for (Control* control : shown) {
    control->Hide();
  }
  table.ShowTable();
  for (const Control* control : shown) {
    EXPECT_TRUE(control->Visible) << control->name();
  }
  velarcTable.ShowTable();
}

struct Comparison {
  const char* name;
  // DSP, HUB, RF1, RF2, LCD
  std::array<const char*, 5> current;
  std::array<const char*, 5> unit;
  bool hasRf2;
  bool oldLink;
  const char* selected;
};

TEST_F(TableTest, OnlyProcessorsBehindTheSetAreSelected) {
  const std::array<const char*, 5> set{"2.31", "2.31", "1.2", "1.2", "1.9"};
  const std::array<const char*, 5> old{"2.30", "2.30", "1.10", "1.10", "1.80"};
  const Comparison cases[] = {
      {"all behind", set, old, true, false, "11111"},
      {"one RF section", set, {"2.30", "2.30", "1.10", "N/A", "1.80"}, false, false, "11101"},
      {"older link", set, old, true, true, "10000"},
      {"equal by number", set, {"2.31", "2.31", "1.20", "1.20", "1.90"}, true, false, "00000"},
      {"newer is left alone", set, {"2.40", "3.00", "1.30", "1.10", "1.90"}, true, false, "00010"},
      {"no set on disk", {"", "", "", "", ""}, old, true, false, "00000"},
  };
  for (const Comparison& c : cases) {
    SCOPED_TRACE(c.name);
    for (std::size_t i = 0; i < 5; ++i) {
      receiver.rows[i].current.Caption = c.current[i];
      receiver.rows[i].inUnit.Caption = c.unit[i];
      receiver.rows[i].selection.Value = 1;
    }
    state.HasRf2 = c.hasRf2;
    state.LegacyLink = c.oldLink;
    table.CompareVersions();
    EXPECT_EQ(selections(world.frmAuto), c.selected);
    for (std::size_t i = 0; i < 5; ++i) {
      EXPECT_EQ(receiver.rows[i].inUnit.ForeColor, c.selected[i] == '1' ? 255 : 65280);
      EXPECT_EQ(receiver.rows[i].selection.Caption, c.selected[i] == '1' ? "YES" : "NO");
    }
  }
  EXPECT_TRUE(world.frmAuto.prgTotal.Visible);
}

TEST_F(TableTest, TheVelarcComparesHubAndDspAlone) {
  for (std::size_t i = 0; i < 5; ++i) {
    velarc.rows[i].current.Caption = "5.02";
    velarc.rows[i].inUnit.Caption = "5.01";
  }
  velarc.rows[3].selection.Value = 1;
  velarcTable.CompareVersions();
  EXPECT_EQ(selections(world.frmVRCAuto), "11010") << "rows that are not compared stay as they are";
  EXPECT_FALSE(world.frmVRCAuto.prgTotal.Visible);
}

TEST_F(TableTest, TheFinalCheckLooksAtTheSetOnDisk) {
  state.LwxSysFile[0] = system("3.1", "2.31", "2.31", "1.2", "1.9");
  state.LwxSysFile[2] = system("2.0", "9", "9", "9", "9");
  state.SelectedSystem = 2;  // of the update list; the file has another system in that row
  struct Case {
    const char* name;
    std::array<const char*, 5> unit;
    bool hasRf2;
    bool oldLink;
    bool fails;
  };
  const Case cases[] = {
      {"all as in the set", {"2.31", "2.31", "1.20", "1.20", "1.90"}, true, false, false},
      {"newer passes", {"9.00", "2.40", "1.30", "1.30", "2.00"}, true, false, false},
      {"the DSP takes no part", {"1.00", "2.31", "1.20", "1.20", "1.90"}, true, false, false},
      {"Hub behind", {"2.31", "2.30", "1.20", "1.20", "1.90"}, true, false, true},
      {"RF1 behind", {"2.31", "2.31", "1.10", "1.20", "1.90"}, true, false, true},
      {"RF2 behind", {"2.31", "2.31", "1.20", "1.10", "1.90"}, true, false, true},
      {"no RF2", {"2.31", "2.31", "1.20", "N/A", "1.90"}, false, false, false},
      {"Front behind", {"2.31", "2.31", "1.20", "1.20", "1.80"}, true, false, true},
      {"older link, DSP equal", {"2.31", "0.00", "0.00", "0.00", "0.00"}, true, true, false},
      {"older link, DSP newer", {"2.32", "2.31", "1.20", "1.20", "1.90"}, true, true, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    for (std::size_t i = 0; i < 5; ++i) {
      receiver.rows[i].inUnit.Caption = c.unit[i];
    }
    state.HasRf2 = c.hasRf2;
    state.LegacyLink = c.oldLink;
    state.FinalCheckFailed = false;
    table.CompareVersionsFinal();
    EXPECT_EQ(state.FinalCheckFailed, c.fails);
  }
}

TEST_F(TableTest, AVelarcFailsTheFinalCheckWithAnyOtherDspButPassesWithANewerHub) {
  state.VrcSysFile[0] = system("3.1", "5.02", "1.1", "3.4", "");
  const std::tuple<const char*, const char*, bool> cases[] = {
      {"5.02", "1.10", false}, {"5.03", "1.10", true}, {"0.00", "1.10", true}, {"5.02", "1.20", false}, {"5.02", "1.00", true}};
  for (const auto& [dsp, hub, fails] : cases) {
    world.frmVRCAuto.DSP1.Caption = dsp;
    world.frmVRCAuto.HUB1.Caption = hub;
    velarcTable.CompareVersionsFinal();
    EXPECT_EQ(state.FinalCheckFailed, fails) << dsp << " " << hub;
  }
}

}  // namespace
}  // namespace firmlane::test
