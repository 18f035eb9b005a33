#include "wizard/auto/system_file.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "wizard_bench.h"

namespace firmlane::test {
namespace {

constexpr std::size_t kFileBytes = 38'190;

struct SystemFileTest : testing::Test {
  SystemFileTest() {
    world.frmAuto.Load();
    world.screen.answerOthers();
  }

  /// The released systems of an update list, newest first.
  void release(const std::vector<std::string>& versions) {
    state.LwxSystems = {};
    for (std::size_t i = 0; i < versions.size(); ++i) {
      state.LwxSystems[i] = system(versions[i], "2.3", "2.4", "1.5", "1.6");
    }
  }
  void pick(int index) {
    state.SelectedSystem = static_cast<std::int16_t>(index);
    file.UpdateFileSysVer();
  }
  /// The set of that system comes down, and is noted.
  void download(int index) {
    FirmwareSet::Fetch(world.set).complete("LWXSys.lwx", rowOf(state.LwxSystems[static_cast<std::size_t>(index)]));
    pick(index);
    file.SaveSysFile();
  }
  /// The program starts anew.
  void restart() { state.LwxSysFile = {}; }
  /// The versions of the first rows in use, in their order.
  std::string rows() {
    std::string text;
    for (const SystemRecord& row : state.LwxSysFile) {
      const std::string version = row.SystemVersion.trimmed();
      if (version.empty()) {
        break;
      }
      text += (text.empty() ? "" : " ") + version;
    }
    return text;
  }

  WizardBench world;
  RunState& state = world.state;
  WizardWindow window = wirelessWindow(world.frmAuto);
  SystemFile file{world.setting, window, wirelessParameters()};
};

std::string padded(const std::string& text, std::size_t size) { return text + std::string(size - text.size(), ' '); }

std::string recordText(const std::string& version) {
  return padded(version, 10) + padded("May " + version, 20) + padded("Note " + version, 100) + padded("2.3", 10) +
         padded("2.4", 10) + padded("1.5", 10) + padded("1.6", 10) + padded("dir" + version, 20);
}

std::string fileText(const std::vector<std::string>& versions) {
  std::string text;
  for (const std::string& version : versions) {
    text += version.empty() ? std::string(kSystemRowBytes, '\0') : recordText(version);
  }
  return text + std::string(kFileBytes - text.size(), '\0');
}

TEST_F(SystemFileTest, TheFileHoldsTheChosenSystemFirstAndEachSystemSeen) {
  file.ReadSysFile();
  EXPECT_EQ(world.directory.read("LWXSys.lwx"), "") << "made when missing";
  release({"3.2", "3.1", "3.0"});
  pick(1);
  EXPECT_EQ(rows(), "3.1 3.1 3.0");
  file.SaveSysFile();
  EXPECT_EQ(world.directory.read("LWXSys.lwx"), fileText({"", "3.1", "3.0"})) << "nothing is on disk yet";
  download(1);
  EXPECT_EQ(world.directory.read("LWXSys.lwx"), fileText({"3.1", "3.1", "3.0", "3.2"}));

  restart();
  file.ReadSysFile();
  release({"3.3", "3.2"});
  pick(0);
  EXPECT_EQ(rows(), "3.3 3.1 3.0 3.2 3.3");
  file.SaveSysFile();
  EXPECT_EQ(world.directory.read("LWXSys.lwx"), fileText({"3.1", "3.1", "3.0", "3.2", "3.3"}));
  file.ReadSysFile();
  EXPECT_EQ(rows(), "3.1 3.1 3.0 3.2 3.3") << "a pick that never came down is forgotten";

  restart();
  file.ReadSysFile();
  release({"3.4", "3.3"});
  pick(1);
  download(1);
  EXPECT_EQ(world.directory.read("LWXSys.lwx"), fileText({"3.3", "3.1", "3.0", "3.2", "3.3", "3.4"}));
  EXPECT_TRUE(world.screen.boxes().empty());
}

TEST_F(SystemFileTest, AFullTableIsOverwrittenFromRow0) {
  for (std::size_t i = 0; i < state.LwxSysFile.size(); ++i) {
    state.LwxSysFile[i] = system("old" + std::to_string(i), "1", "1", "1", "1");
  }
  std::vector<std::string> versions;
  for (int i = 0; i < 11; ++i) {
    versions.push_back(i < 8 ? "old" + std::to_string(100 + i) : "new" + std::to_string(i));
  }
  release(versions);
  pick(10);
  EXPECT_TRUE(rows().starts_with("new10 new9 new10 old3 ")) << rows().substr(0, 40);
  EXPECT_EQ(state.LwxSysFile[200].SystemVersion.trimmed(), "old200");
  file.SaveSysFile();
  EXPECT_EQ(world.directory.read("LWXSys.lwx").size(), kFileBytes);
}

TEST_F(SystemFileTest, WhateverAFileHoldsItsWholeRecordsAreTakenAndTheRestStays) {
  struct Case {
    const char* name;
    std::string content;
    std::string rows;
  };
  const std::string garbage = "\x01\xFF\x80|\n" + std::string(185, '\xFE');
  const Case cases[] = {
      {"empty", "", "a b c"},
      {"half a record", recordText("3.1").substr(0, 90), "a b c"},
      {"one and a half", recordText("3.1") + recordText("3.0").substr(0, 100), "3.1 b c"},
      {"garbage", garbage, std::string("\x01\xFF\x80|\n") + std::string(5, '\xFE') + " b c"},
      {"zero inside a field", std::string("3\0x", 3) + std::string(187, ' '), "3 b c"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    restart();
    state.LwxSysFile[0] = system("a", "1", "1", "1", "1");
    state.LwxSysFile[1] = system("b", "1", "1", "1", "1");
    state.LwxSysFile[2] = system("c", "1", "1", "1", "1");
    world.directory.write("LWXSys.lwx", c.content);
    file.ReadSysFile();
    EXPECT_EQ(rows(), c.rows);
  }
  world.directory.write("LWXSys.lwx", std::string(50'000, 'x'));
  file.ReadSysFile();
  EXPECT_EQ(state.LwxSysFile[199].SystemVersion.trimmed(), "xxxxxxxxxx");
  EXPECT_EQ(state.LwxSysFile[200], SystemRecord()) << "the last row is not read";
  EXPECT_TRUE(world.screen.boxes().empty());
}

TEST_F(SystemFileTest, AFileThatCannotBeOpenedIsToldAndTheTableStays) {
  std::filesystem::create_directories(world.directory.path() / "LWXSys.lwx" / "x");
  release({"3.2"});
  pick(0);
  file.ReadSysFile();
  file.SaveSysFile();
  EXPECT_EQ(rows(), "") << "there is no set that could be known";
  ASSERT_EQ(world.screen.boxes().size(), 2U);
  const std::string path = (world.directory.path() / "LWXSys.lwx").string();
  EXPECT_EQ(world.screen.boxes()[0].text, "Error reading LWXSys.lwx: Not a file: " + path + " (#75)");
  EXPECT_EQ(world.screen.boxes()[0].icon, MessageIcon::Critical);
  EXPECT_EQ(world.screen.boxes()[1].text, state.ErrorText);
  EXPECT_TRUE(state.ErrorText.starts_with("Error writing LWXSys.lwx: ")) << state.ErrorText;
  std::filesystem::remove_all(world.directory.path());
  file.ReadSysFile();
  EXPECT_TRUE(state.ErrorText.starts_with("Error creating LWXSys.lwx: ")) << state.ErrorText;
}

TEST_F(SystemFileTest, ASetThatCannotBePutInItsPlaceIsNone) {
  state.LwxSysFile[0] = system("3.1", "1", "1", "1", "1");
  state.LwxSysFile[1] = system("3.0", "1", "1", "1", "1");
  world.directory.write("firmlane.set", std::string("damaged"));
  file.ReadSysFile();
  EXPECT_EQ(state.LwxSysFile[0], SystemRecord());
  EXPECT_EQ(state.LwxSysFile[1].SystemVersion.trimmed(), "3.0");
  EXPECT_TRUE(state.ErrorText.starts_with("Error reading LWXSys.lwx: The firmware files there are not one set: "))
      << state.ErrorText;
  world.directory.write("wls.bin", std::string("of some set"));
  EXPECT_FALSE(file.imagesThere());
  std::filesystem::remove(world.directory.path() / "firmlane.set");
  file.ReadSysFile();
  EXPECT_TRUE(file.imagesThere());
}

TEST_F(SystemFileTest, AUnitIsRecognisedByTheTextOfItsVersions) {
  FrmAuto& form = world.frmAuto;
  const auto unit = [&form](const char* dsp, const char* hub, const char* rf, const char* front) {
    form.DSP1.Caption = dsp;
    form.HUB1.Caption = hub;
    form.RF1.Caption = rf;
    form.RF2.Caption = "N/A";
    form.LCD1.Caption = front;
  };
  state.LwxSysFile[0] = system("3.1", "2.31", "2.40", "1.50", "1.60");
  state.LwxSysFile[4] = system("3.0", "2.31", "2.40", "1.50", "1.60");
  state.LwxSysFile[50] = system("2.9", "2.30", "2.40", "1.50", "1.60");
  state.LwxSysFile[51] = system("2.8", "2.20", "2.40", "1.50", "1.60");
  using Four = std::array<const char*, 4>;
  for (const auto& [versions, row] : {std::pair{Four{"2.31", "2.40", "1.50", "1.60"}, 4},
                                      {Four{"2.30", "2.40", "1.50", "1.60"}, 50},
                                      {Four{"2.20", "2.40", "1.50", "1.60"}, 99},
                                      {Four{"2.31", "2.41", "1.50", "1.60"}, 99},
                                      {Four{"2.31", "2.40", "1.51", "1.60"}, 99},
                                      {Four{"2.31", "2.40", "1.50", "1.61"}, 99},
                                      {Four{"2.3", "2.40", "1.50", "1.60"}, 99}}) {
    unit(versions[0], versions[1], versions[2], versions[3]);
    file.ShowSysVer();
    EXPECT_EQ(state.MatchedSystem, row) << versions[0] << " " << versions[1] << " " << versions[2] << " " << versions[3];
  }
  state.LegacyLink = true;
  file.ShowSysVer();
  EXPECT_EQ(state.MatchedSystem, 99) << "left as it was";
  unit("2.31", "0", "0", "0");
  file.ShowSysVer();
  EXPECT_EQ(state.MatchedSystem, 0);
}

TEST_F(SystemFileTest, AVelarcIsRecognisedByDspAndHubInItsOwnFile) {
  WizardWindow velarc = velarc2Window(world.frmVRCAuto);
  SystemFile velarcFile{world.setting, velarc, velarc2Parameters()};
  world.frmVRCAuto.DSP1.Caption = "5.02";
  world.frmVRCAuto.HUB1.Caption = "1.10";
  for (const int row : {21, 20}) {
    state.VrcSysFile[static_cast<std::size_t>(row)] = system("3.1", "5.02", "1.10", "9", "9");
    velarcFile.ShowSysVer();
    EXPECT_EQ(state.MatchedSystem, row == 20 ? 20 : 99);
  }
  const std::pair<const char*, const char*> others[] = {{"5.01", "1.10"}, {"5.02", "1.11"}};
  for (const auto& [dsp, hub] : others) {
    world.frmVRCAuto.DSP1.Caption = dsp;
    world.frmVRCAuto.HUB1.Caption = hub;
    velarcFile.ShowSysVer();
    EXPECT_EQ(state.MatchedSystem, 99) << dsp << " " << hub;
  }
  velarcFile.SaveSysFile();
  EXPECT_EQ(world.directory.read("VRC2Sys.vrc").size(), kFileBytes);
}

}  // namespace
}  // namespace firmlane::test
