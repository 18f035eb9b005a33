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

TEST_F(EndToEndTest, AScriptMayComeFromAnEditorOfWindows) {
  Process console("firmlane-console", consoleOptions("/dev/null", "1"));
  console.must(QStringLiteral("\uFEFFget RunState.WizardPage\r"));
  console.must("click Form1.Command3\r");
  console.must("quit\r");
  EXPECT_EQ(console.finish(), 0);
}

TEST_F(EndToEndTest, AWrongOptionEndsWithStatusTwo) {
  for (const QStringList& options :
       {QStringList{"--what"}, QStringList{"--port", "17=/dev/null"}, QStringList{"--time-scale", "0.5"},
        QStringList{"--server", "nonsense"}, QStringList{"--dir", dir() + "/nothing"}, QStringList{"word"},
        QStringList{"--record", dir() + "/nothing/record.txt"}}) {
    Process console("firmlane-console", options);
    EXPECT_EQ(console.finish(), 2) << options.join(' ').toStdString();
  }
}

}  // namespace
}  // namespace firmlane::test
