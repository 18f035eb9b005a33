// What the programs say before they do anything.
#include <gtest/gtest.h>

#include <QProcess>

namespace firmlane::test {
namespace {

struct Ended {
  int status = -1;
  QString out;
  QString error;
};

Ended run(const QString& program, const QStringList& arguments) {
  QProcess process;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  for (const char* display : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
    environment.remove(display);
  }
  process.setProcessEnvironment(environment);
  process.start(QStringLiteral(PROGRAMS "/") + program, arguments);
  process.closeWriteChannel();
  if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit) {
    return {};
  }
  return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
          QString::fromUtf8(process.readAllStandardError())};
}

#ifdef Q_OS_UNIX  // elsewhere there is always one
TEST(CommandLineTest, WithoutADisplayAProgramWithWindowsSaysSoAndEnds) {
  for (const char* program : {"firmlane", "firmlane-demo"}) {
    const Ended ended = run(program, {});
    EXPECT_EQ(ended.status, 1) << program;
    EXPECT_EQ(ended.error, "There is no display on which the windows can be shown.\n") << program;
  }
}
#endif

TEST(CommandLineTest, EveryToolTellsItsOptionsAndVersionAlsoWithoutADisplay) {
  for (const char* program : {"firmlane-console", "firmlane-simulator", "firmlane-demo"}) {
    const Ended help = run(program, {"--help"});
    EXPECT_EQ(help.status, 0) << program;
    EXPECT_TRUE(help.out.contains("--version")) << program;
    const Ended version = run(program, {"--version"});
    EXPECT_EQ(version.status, 0) << program;
    EXPECT_EQ(version.out, QString("%1 " FIRMLANE_VERSION "\n").arg(program));
    EXPECT_GT(run(program, {"--no-such-option"}).status, 0) << program;
  }
  EXPECT_EQ(run("firmlane", {"--version"}).status, 2) << "the delivered program takes no options";
}

}  // namespace
}  // namespace firmlane::test
