// An auto wizard with programs as users have them: console, unit and the maker's web server as processes.
#include <gmock/gmock.h>

#include <QFile>
#include <QTemporaryDir>

#include "process.h"

namespace firmlane::test {
namespace {

struct WizardOnline : testing::Test {
  WizardOnline() : simulator("firmlane-simulator", {"--serve", "--unit", "lwx52", "--time-scale", "10"}) {
    const QString device = simulator.line()["pty"].toString();
    const QString server = simulator.answer()["server"].toString();
    console.emplace("firmlane-console", QStringList{"--dir", directory.path(), "--port", "3=" + device, "--server", server,
                                                    "--registration-server", server, "--time-scale", "10"});
  }
  /// A command on the wizard's window, written with % in place of the window's name.
  QJsonValue must(const QString& line) { return console->must(QString(line).replace('%', "frmAuto")); }
  void next() { must("click %.btnNext"); }
  void openWizard() {
    must("click Form1.Command3");
    must("click Form1.LWXButton");
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

TEST_F(WizardOnline, TakesAUnitFromTheWelcomeToTheVerdict) {
  openWizard();
  findPort(*console);
  must("wait RunState.AutoPage == 2 60");
  next();
  must("wait %.VersionList.visible == true 60");
  must("choose %.VersionList 0");
  must("wait RunState.AutoPage == 3 5");
  next();
  must("wait RunState.AutoPage == 4 60");
  for (const char* file : {"HUBSL.s19", "wls.bin", "RFSL.s19", "FNTLCDc.s19"}) {
    EXPECT_TRUE(QFile::exists(directory.filePath(file))) << file;
  }
  for (int processor = 1; processor <= 5; ++processor) {
    const QString page = processor < 5 ? "5" : "6";
    next();
    switchUnitOffAndOn();
    must("wait RunState.AutoPage == " + page + " 120");
  }
  next();
  switchUnitOffAndOn();
  must("wait RunState.AutoPage == 19 60");
  EXPECT_EQ(must("get %.lblMain.caption").toString(),
            "Programming Complete.\r\n\r\nCongratulations, you have successfully programmed your LWX receiver!\r\r");
  EXPECT_EQ(must("get %.prgTotal.value"), must("get %.prgTotal.max"));
  const QJsonObject versions = simulator.ask("state")["state"].toObject()["versions"].toObject();
  for (const auto& [processor, version] :
       {std::pair{"Hub", "2.12"}, {"DSP", "2.31"}, {"RF1", "1.17"}, {"RF2", "1.17"}, {"Front", "2.23"}}) {
    EXPECT_EQ(versions[processor].toString(), version) << processor;
  }
  EXPECT_EQ(QFile(directory.filePath("LWXSys.lwx")).size(), 38190);
  must("click %.cmdQuit");
  EXPECT_EQ(console->finish(), 0);
}

}  // namespace
}  // namespace firmlane::test
