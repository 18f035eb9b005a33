// A record played by the programs that a developer plays it with: over a pseudo-terminal, in real time on a fast clock.
#include <gmock/gmock.h>

#include <QFile>
#include <QTemporaryDir>

#include "process.h"

namespace firmlane::test {
namespace {

/// What tools/replay says of a record of this machine, and its status.
std::pair<std::string, int> replayed(const QString& record, const QString& directory) {
  QProcess tool;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert("PROGRAMS", PROGRAMS);
  environment.insert("SCALE", "10");
  tool.setProcessEnvironment(environment);
  tool.setProcessChannelMode(QProcess::MergedChannels);
  tool.start(TOOLS "/replay", {record, directory});
  EXPECT_TRUE(tool.waitForFinished(60000));
  return {tool.readAll().toStdString(), tool.exitCode()};
}

TEST(LiveReplay, ARecordComesToItsEndAndADifferenceIsNamedWithItsPlace) {
  const QTemporaryDir directory;
  Process images("firmlane-simulator", {"--make-images", "5.3.0", "--dir", directory.path()});
  ASSERT_EQ(images.finish(), 0);
  QFile file(RECORDINGS "/refusal.txt");
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray record = file.readAll();
  struct Case {
    const char* was;
    const char* is;
    const char* told;
  };
  for (const Case& c : {
           Case{"", "", "{\"replay\":\"done\"}\n"},
           Case{"1E 01 1F 3E 3E", "1E 02 20 3E 3E", "line 38, 1.044517 s, the record has: sent 3:"},
           Case{"box none \"Tolvex Firmlane\" \"Failure programming", "box none \"Tolvex Firmlane\" \"No success programming",
                "(line 52 of the record), wait MessageBox.text == \"No success programming Vel-Arc FLASH\""},
           Case{"Waiting for a Receiver reset", "Waiting for a reset", "line 33 of the record: says Form1.lblTop"},
           Case{"sum B8CA871E44A16846", "sum B8CA871E44A16847", "line 34: file \"vrc.bin\" 20000 bytes sum B8CA871E44A16847"},
       }) {
    QFile edited(directory.filePath("record.txt"));
    ASSERT_TRUE(edited.open(QIODevice::WriteOnly));
    edited.write(*c.was == '\0' ? record : QByteArray(record).replace(c.was, c.is));
    edited.close();
    const auto [told, status] = replayed(edited.fileName(), directory.path());
    EXPECT_THAT(told, testing::HasSubstr(c.told));
    EXPECT_EQ(status == 0, *c.was == '\0') << told;
  }
}

}  // namespace
}  // namespace firmlane::test
