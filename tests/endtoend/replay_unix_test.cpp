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

/// What of the record is edited, and what is told then; nothing edited plays to its end.
struct Edit {
  const char* name;
  const char* was;
  const char* is;
  const char* told;
};
const Edit kEdits[] = {
    {"nothing", "", "", "{\"replay\":\"done\"}\n"},
    {"byte", "1E 01 1F 3E 3E", "1E 02 20 3E 3E", "line 38, 1.044517 s, the record has: sent 3:"},
    {"box", "box none \"Tolvex Firmlane\" \"Failure programming", "box none \"Tolvex Firmlane\" \"No success programming",
     "(line 52 of the record), wait MessageBox.text == \"No success programming Vel-Arc FLASH\""},
    {"words", "Waiting for a Receiver reset", "Waiting for a reset", "line 33 of the record: says Form1.lblTop"},
    {"sum", "sum B8CA871E44A16846", "sum B8CA871E44A16847", "line 34: file \"vrc.bin\" 20000 bytes sum B8CA871E44A16847"},
};

struct LiveReplay : testing::TestWithParam<Edit> {};

TEST_P(LiveReplay, ARecordComesToItsEndAndADifferenceIsNamedWithItsPlace) {
  const QTemporaryDir directory;
  Process images("firmlane-simulator", {"--make-images", "5.3.0", "--dir", directory.path()});
  ASSERT_EQ(images.finish(), 0);
  QFile file(RECORDINGS "/refusal.txt");
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray record = file.readAll();
  const Edit& edit = GetParam();
  const bool whole = *edit.was == '\0';
  QFile edited(directory.filePath("record.txt"));
  ASSERT_TRUE(edited.open(QIODevice::WriteOnly));
  edited.write(whole ? record : QByteArray(record).replace(edit.was, edit.is));
  edited.close();
  const auto [told, status] = replayed(edited.fileName(), directory.path());
  EXPECT_THAT(told, testing::HasSubstr(edit.told));
  EXPECT_EQ(status == 0, whole) << told;
}
INSTANTIATE_TEST_SUITE_P(Edits, LiveReplay, testing::ValuesIn(kEdits), [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace firmlane::test
