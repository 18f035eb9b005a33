// The console and the simulator as their users have them: two processes and a pseudo-terminal between them.
#include <gmock/gmock.h>

#include <QFile>
#include <QTemporaryDir>

#include "process.h"

namespace firmlane::test {
namespace {

class EndToEndTest : public testing::Test {
 protected:
  [[nodiscard]] QString dir() const { return directory_.path(); }
  [[nodiscard]] QStringList consoleOptions(const QString& device, const QString& scale = "10") const {
    return {"--dir", dir(), "--port", "3=" + device, "--time-scale", scale};
  }

  QTemporaryDir directory_;
};

TEST_F(EndToEndTest, AnOlderVelarcIsProgrammedFromTheWelcomePageToCongratulations) {
  Process unit("firmlane-simulator", {"--unit", "velarc", "--time-scale", "10", "--dir", dir(), "--make-images", "5.0.9"});
  const QString device = unit.line()["pty"].toString();
  ASSERT_FALSE(device.isEmpty());
  Process console("firmlane-console", consoleOptions(device));
  console.must("click Form1.Command3");
  console.must("click Form1.VRColdButton");
  console.must("wait RunState.WizardPage == 0 5");
  console.must("click Form1.Option1(2)");
  console.must("click Form1.Command3");
  console.must("wait RunState.WizardPage == 5 5");
  console.must("click Form1.Command3");
  findPort(console);
  console.must("wait RunState.WizardPage == 6 5");
  EXPECT_EQ(console.must("get RunState.ComPort").toInt(), 3);
  unit.ask("power off");
  console.must("click Form1.Command3");
  console.must(R"(wait Form1.lblTop.caption contains "Please turn on the power switch" 5)");
  unit.ask("power on");
  console.must(R"(wait Form1.lblTop.caption contains "now erasing FLASH Memory" 20)");
  console.must(R"(wait Form1.lblTop.caption contains "Congratulations!" 200)");
  EXPECT_EQ(console.must("get RunState.WizardPage").toInt(), 7);
  console.must("click Form1.Command3");
  console.must("wait RunState.WizardPage == 0 5");
  EXPECT_THAT(console.events().join('\n').toStdString(), testing::HasSubstr("COM3 found, now Connecting"));
}

TEST_F(EndToEndTest, APortThatIsNotThereIsToldAndTheProgramGoesOn) {
  Process console("firmlane-console", consoleOptions(dir() + "/nothing"));
  console.must("click Form1.Command3");
  console.must("click Form1.VRColdButton");
  console.must("wait RunState.WizardPage == 0 5");
  console.must("click Form1.Option1(2)");
  console.must("click Form1.Command3");
  console.must("click Form1.Command3");
  console.must("wait form frmPort 5");
  console.must("click frmPort.Command3");
  console.must("click frmPort.Option1(2)");
  console.must("click frmPort.Command1");
  console.must("wait messagebox 5");
  EXPECT_THAT(console.events().last().toStdString(), testing::HasSubstr("Error opening port: There is no serial port COM 3"));
  console.must("answer OK");
  console.must("close frmPort");
  console.must("wait noform frmPort 5");
  EXPECT_EQ(console.must("get RunState.WizardPage").toInt(), 5);
}

TEST_F(EndToEndTest, QuitEndsInTheMiddleOfAWaitAndExitWithItsQuestion) {
  {
    Process console("firmlane-console", consoleOptions("/dev/null", "1"));
    console.must("click Form1.Command3");
    console.must("click Form1.VRColdButton");
    console.must("wait RunState.WizardPage == 0 5");
    console.must("click Form1.Option1(2)");
    console.must("click Form1.Command3");
    console.must("click Form1.Command3");
    console.must("wait form frmPort 5");
    console.must("quit");
    EXPECT_EQ(console.finish(), 0);
  }
  Process console("firmlane-console", consoleOptions("/dev/null", "1"));
  console.must("click Form1.Command2");
  console.must("wait messagebox 5");
  console.must("answer OK");
  // The program has ended by now, or is about to.
  console.must("wait end 5");
  EXPECT_EQ(console.finish(), 0);
  EXPECT_THAT(console.events().last().toStdString(), testing::HasSubstr("\"end\""));
}

TEST_F(EndToEndTest, AScriptThatComesAllAtOnceIsWorkedLineByLine) {
  Process console("firmlane-console", consoleOptions("/dev/null", "1000"));
  console.write(
      "# the first pages\n"
      "click Form1.VRCButton\n"
      "click Form1.Command3\n"
      "get Form1.Command3\n"
      "click \"Form1.VRColdButton\"\n"
      "wait RunState.WizardPage == 0 60\n"
      "click Form1.Command2\n"
      "click Form1.Command3\n"
      "answer Cancel\n"
      "forms\n"
      "close Form1\n"
      "answer OK\n"
      "wait end 60\n"
      "forms");
  EXPECT_EQ(console.finish(), 0);
  EXPECT_EQ(console.rest(), R"({"event":"show","form":"Form1","modal":false}
{"ok":false,"error":"not visible"}
{"ok":true}
{"ok":true,"value":{"caption":"Next >>","visible":true,"enabled":false}}
{"ok":true}
{"ok":true}
{"ok":true}
{"event":"messagebox","text":"Quit Tolvex Firmlane Now?","title":"Warning","icon":"none","buttons":["OK","Cancel"]}
{"ok":false,"error":"message box is up"}
{"ok":true}
{"ok":true,"value":[{"form":"Form1","modal":false}]}
{"ok":true}
{"event":"messagebox","text":"Quit Tolvex Firmlane Now?","title":"Warning","icon":"none","buttons":["OK","Cancel"]}
{"ok":true}
{"event":"end"}
{"ok":true}
{"ok":false,"error":"ended"}
)");
}

TEST_F(EndToEndTest, AWrongOptionEndsWithStatusTwo) {
  for (const QStringList& options :
       {QStringList{"--what"}, QStringList{"--port", "17=/dev/null"}, QStringList{"--time-scale", "0.5"},
        QStringList{"--server", "nonsense"}, QStringList{"--dir", dir() + "/nothing"}, QStringList{"word"}}) {
    Process console("firmlane-console", options);
    EXPECT_EQ(console.finish(), 2) << options.join(' ').toStdString();
  }
}

}  // namespace
}  // namespace firmlane::test
