// What comes over the web, with programs as users have them: console, unit and the maker's web server as processes.
#include <gmock/gmock.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "process.h"

namespace firmlane::test {
namespace {

using testing::HasSubstr;

#ifdef Q_OS_UNIX
constexpr bool kHasUnit = true;
const QStringList kOptions = {"--serve", "--unit", "velarc", "--time-scale", "10"};
#else  // no pseudo-terminal
constexpr bool kHasUnit = false;
const QStringList kOptions = {"--serve"};
#endif

struct OverTheWeb : testing::Test {
  /// The simulator with its web server, and with an older Velarc.
  OverTheWeb() : simulator("firmlane-simulator", kOptions) {
    device = kHasUnit ? simulator.line()["pty"].toString() : QStringLiteral("none");
    server = simulator.answer()["server"].toString();
  }
  [[nodiscard]] QStringList options() const {
    return {"--dir", directory.path(),        "--port", "3=" + device,  "--server",
            server,  "--registration-server", server,   "--time-scale", "10"};
  }
  /// From the welcome page of the older Velarc to the list of what it can get.
  static void fetchList(Process& console, int choice) {
    console.must("click Form1.Command3");
    console.must("click Form1.VRColdButton");
    console.must("wait RunState.WizardPage == 0 5");
    console.must(QString("click Form1.Option1(%1)").arg(choice));
    console.must("click Form1.Command3");
    console.must(R"(wait Form1.lblStatus.caption contains "has received a list" 60)");
    console.must("click Form1.Command3");
    console.must("wait Form1.txtEmail.visible == true 60");
  }
  static void answer(Process& console, const QString& button) {
    console.must("wait messagebox 60");
    console.must("answer " + button);
  }
  [[nodiscard]] std::string told(const Process& console) const { return console.events().join('\n').toStdString(); }

  QTemporaryDir directory;
  Process simulator;
  QString device;
  QString server;
};

TEST_F(OverTheWeb, AnOlderVelarcIsTakenFromTheListToAProgrammedUnit) {
  Process console("firmlane-console", options());
  fetchList(console, 0);
  console.must(R"(type Form1.txtEmail "ann@mail.example")");
  console.must(R"(type Form1.txtFirst "Ann")");
  console.must("click Form1.Command3");
  answer(console, "OK");
  EXPECT_THAT(told(console), HasSubstr("Thank you for registering with Tolvex!"));
  console.must("wait RunState.WizardPage == 3 20");
  EXPECT_EQ(console.must("get Form1.btnVRCrelnotef.visible").toBool(), true);
  console.must("click Form1.Command3");
  answer(console, "OK");
  EXPECT_THAT(told(console), HasSubstr("Please click on one of the firmware versions"));
  console.must("choose Form1.List1 1");
  console.must("click Form1.Command3");
  console.must("wait RunState.WizardPage == 4 60");
  EXPECT_EQ(console.must("get Form1.lblProgressInfo.caption").toString(), "Downloaded 20000 bytes (100%)");
  EXPECT_TRUE(QFile::exists(directory.filePath("updateVC.txt")));
  console.must("click Form1.Command3");
  answer(console, "Yes");
  console.must("wait RunState.WizardPage == 5 20");
  EXPECT_THAT(told(console), HasSubstr("/Velarc/Firmware/version.html"));

  if (!kHasUnit) {
    GTEST_SKIP() << "the rest takes a unit";
  }
  console.must("click Form1.Command3");
  findPort(console);
  console.must("wait RunState.WizardPage == 6 5");
  simulator.ask("power off");
  console.must("click Form1.Command3");
  console.must(R"(wait Form1.lblTop.caption contains "Please turn on the power switch" 5)");
  simulator.ask("power on");
  console.must(R"(wait Form1.lblTop.caption contains "Congratulations!" 300)");
  EXPECT_EQ(simulator.ask("state")["state"].toObject()["versions"].toObject()["DSP"].toString(), "5.3.0");
}

TEST_F(OverTheWeb, RemoteSoftwareEndsInItsInstaller) {
  Process console("firmlane-console", options());
  fetchList(console, 1);
  console.must("click Form1.Command3");
  console.must("wait RunState.WizardPage == 22 20");
  console.must("choose Form1.List1 0");
  console.must("click Form1.Command3");
  answer(console, "No");
  console.must("wait RunState.WizardPage == 23 60");
  EXPECT_EQ(console.must("get Form1.lblTop.caption").toString(), "Finished downloading software!\r\rClick on Next to Continue");
  console.must("click Form1.Command3");
  EXPECT_EQ(console.line()["program"].toString(), QDir::toNativeSeparators(directory.filePath("VelarcRemote62.exe")));
  EXPECT_EQ(console.finish(), 0);
}

}  // namespace
}  // namespace firmlane::test
