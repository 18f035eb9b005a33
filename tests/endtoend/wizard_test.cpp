// The auto wizards with programs as users have them: console, unit and the maker's web server as processes.
#include <gmock/gmock.h>

#include <QFile>
#include <QTemporaryDir>

#include "process.h"

namespace firmlane::test {
namespace {

/// A product's way through its wizard.
struct Journey {
  const char* unit;
  const char* button;  // of Form1
  const char* form;
  std::vector<const char*> files;
  const char* sysFile;
  int processors;
  const char* verdict;
  /// What the unit runs afterwards, by the names of its processors.
  std::vector<std::pair<const char*, const char*>> versions;
};

void PrintTo(const Journey& journey, std::ostream* out) { *out << journey.unit; }

struct WizardOnline : testing::TestWithParam<Journey> {
  WizardOnline() : simulator("firmlane-simulator", {"--serve", "--unit", GetParam().unit, "--time-scale", "10"}) {
    const QString device = simulator.line()["pty"].toString();
    const QString server = simulator.answer()["server"].toString();
    console.emplace("firmlane-console", QStringList{"--dir", directory.path(), "--port", "3=" + device, "--server", server,
                                                    "--registration-server", server, "--time-scale", "10"});
  }
  /// A command on the wizard's window, written with % in place of the window's name.
  QJsonValue must(const QString& line) { return console->must(QString(line).replace('%', GetParam().form)); }
  void next() { must("click %.btnNext"); }
  void openWizard() {
    must("click Form1.Command3");
    must(QString("click Form1.") + GetParam().button);
    must("click Form1.Command3");
    must("wait form % 5");
    next();
    must("click %.ChkOffline");
    must("click %.chkReceiver");
    next();
  }
  void switchUnitOffAndOn() {
    simulator.must("power off");
    simulator.must("power on");
  }

  QTemporaryDir directory;
  Process simulator;
  std::optional<Process> console;
};

TEST_P(WizardOnline, TakesAUnitFromTheWelcomeToTheVerdict) {
  openWizard();
  findPort(*console);
  must("wait RunState.AutoPage == 2 60");
  next();
  must("wait %.VersionList.visible == true 60");
  must("choose %.VersionList 0");
  must("wait RunState.AutoPage == 3 5");
  next();
  must("wait RunState.AutoPage == 4 60");
  for (const char* file : GetParam().files) {
    EXPECT_TRUE(QFile::exists(directory.filePath(file))) << file;
  }
  for (int processor = 1; processor <= GetParam().processors; ++processor) {
    const QString page = processor < GetParam().processors ? "5" : "6";
    next();
    switchUnitOffAndOn();
    must("wait RunState.AutoPage == " + page + " 120");
  }
  next();
  switchUnitOffAndOn();
  must("wait RunState.AutoPage == 19 60");
  EXPECT_EQ(must("get %.lblMain.caption").toString(), GetParam().verdict);
  EXPECT_EQ(must("get %.prgTotal.value"), must("get %.prgTotal.max"));
  const QJsonObject versions = simulator.ask("state")["state"].toObject()["versions"].toObject();
  for (const auto& [processor, version] : GetParam().versions) {
    EXPECT_EQ(versions[processor].toString(), version) << processor;
  }
  EXPECT_EQ(QFile(directory.filePath(GetParam().sysFile)).size(), 38190);
  must("click %.cmdQuit");
  EXPECT_EQ(console->finish(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Products, WizardOnline,
    testing::Values(
        Journey{"lwx52",
                "LWXButton",
                "frmAuto",
                {"HUBSL.s19", "wls.bin", "RFSL.s19", "FNTLCDc.s19"},
                "LWXSys.lwx",
                5,
                "Programming Complete.\r\n\r\nCongratulations, you have successfully programmed your LWX receiver!\r\r",
                {{"Hub", "2.12"}, {"DSP", "2.31"}, {"RF1", "1.17"}, {"RF2", "1.17"}, {"Front", "2.23"}}},
        Journey{"velarc2b",
                "VRCButton",
                "frmVRCAuto",
                {"vrc2.bin", "vrc2hub.s19", "vrc2fnt.s19"},
                "VRC2Sys.vrc",
                2,
                "Programming Complete.\r\n\r\nCongratulations, you have successfully programmed your Velarc2!\r\r",
                {{"Hub", "5.0.3"}, {"DSP", "5.0.4"}}}),
    [](const auto& tested) { return tested.param.unit; });

}  // namespace
}  // namespace firmlane::test
