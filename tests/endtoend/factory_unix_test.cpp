// The production line with programs as it has them: console and unit as processes, `sn.wls` on the disk.
#include <gmock/gmock.h>

#include <QFile>
#include <QTemporaryDir>

#include "process.h"

namespace firmlane::test {
namespace {

struct Station {
  explicit Station(const QString& directory)
      : simulator("firmlane-simulator", {"--unit", "lwx52", "--dir", directory, "--time-scale", "10"}),
        console("firmlane-console", {"--dir", directory, "--port", "2=" + simulator.line()["pty"].toString(), "--time-scale",
                                     "10", "--factory-build"}) {}

  void next() { console.must("click Form1.Command3"); }
  /// From the press of "Program Serial Number Only", to the choice of the model.
  void confirmNumber() {
    simulator.must("power off");
    simulator.must("power on");
    for (int second = 0; second < 60 && unit()["phase"] != "running"; ++second) {
      console.must("sleep 1");
    }
    next();
    next();
    console.must("wait RunState.SerialStep == 3 5");
  }
  void awaitUnit() { console.must(R"(wait Form1.lblResetSerial.caption == "Serial Number Programmed!\r\nPreset 0 Loaded!" 60)"); }
  QJsonObject unit() { return simulator.ask("state")["state"].toObject(); }

  Process simulator;
  Process console;
};

struct ProductionLine : testing::Test {
  ProductionLine() { writeCounter(QByteArray::fromHex("db050000")); }
  void writeCounter(const QByteArray& bytes) const {
    QFile file(directory.filePath("sn.wls"));
    ASSERT_TRUE(file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size());
  }
  [[nodiscard]] std::string counter() const {
    QFile file(directory.filePath("sn.wls"));
    return file.open(QFile::ReadOnly) ? file.readAll().toHex(' ').toStdString() : "no file";
  }

  QTemporaryDir directory;
};

TEST_F(ProductionLine, TwoStationsAtTheSamePageGiveTwoNumbers) {
  Station stations[] = {Station(directory.path()), Station(directory.path())};
  for (Station& station : stations) {
    station.console.must("click Form1.btnSN");
    station.confirmNumber();
    EXPECT_EQ(station.console.must("get Form1.txtNum.text").toString(), "1499");
  }
  for (Station& station : stations) {
    station.next();
  }
  QStringList outcomes;
  QStringList numbers;
  for (Station& station : stations) {
    station.awaitUnit();
    const QString number = QString::number(station.unit()["serial"].toInt());
    EXPECT_EQ(station.console.must("get Form1.txtNum.text").toString(), number);
    numbers << number;
    outcomes << station.console.must("get Form1.lblOutcome.caption").toString();
  }
  numbers.sort();
  outcomes.sort();
  EXPECT_EQ(numbers, (QStringList{"1499", "1500"}));
  EXPECT_EQ(outcomes, (QStringList{"", "Another station has taken number 1499: this receiver gets number 1500"}));
  EXPECT_EQ(counter(), "dd 05 00 00");
}

TEST_F(ProductionLine, TheSecondUserOfAPortIsToldWhoHasIt) {
  Process simulator("firmlane-simulator", {"--unit", "lwx52", "--dir", directory.path(), "--time-scale", "10"});
  const QString device = simulator.line()["pty"].toString();
  const QStringList options = {"--dir", directory.path(), "--port", "2=" + device, "--time-scale", "10", "--factory-build"};
  Process first("firmlane-console", options);
  Process second("firmlane-console", options);
  const auto boxOf = [](Process& console) {
    console.must("click Form1.btnMic");
    console.must("wait messagebox 60");
    return console.events().last().toStdString();
  };
  EXPECT_THAT(boxOf(first), testing::HasSubstr("Unable to connect to receiver, try again?"));
  const QString holder =
      device + ") is in use by another program (firmlane-console, process " + QString::number(first.pid()) + ")";
  EXPECT_THAT(boxOf(second), testing::HasSubstr(holder.toStdString()));
  second.must("answer OK");
  second.must("get Form1.btnMic.visible");
  // Killed, it leaves nothing that keeps the port.
  first.kill();
  EXPECT_THAT(boxOf(second), testing::HasSubstr("Unable to connect to receiver, try again?"));
}

}  // namespace
}  // namespace firmlane::test
