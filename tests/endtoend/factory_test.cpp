// The production line with programs as it has them: console and unit as processes, `sn.wls` on the disk.
#include <gmock/gmock.h>

#include <QFile>
#include <QTemporaryDir>

#include "process.h"

namespace firmlane::test {
namespace {

struct ProductionLine : testing::Test {
  ProductionLine()
      : simulator("firmlane-simulator", {"--unit", "lwx52", "--dir", directory.path(), "--make-images", "2.31", "--image-size",
                                         "2000", "--time-scale", "10"}) {
    console.emplace("firmlane-console",
                    QStringList{"--dir", directory.path(), "--port", "2=" + simulator.line()["pty"].toString(), "--time-scale",
                                "10", "--factory-build"});
    writeCounter(QByteArray::fromHex("db050000"));
  }
  void writeCounter(const QByteArray& bytes) const {
    QFile file(directory.filePath("sn.wls"));
    ASSERT_TRUE(file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size());
  }
  [[nodiscard]] std::string counter() const {
    QFile file(directory.filePath("sn.wls"));
    return file.open(QFile::ReadOnly) ? file.readAll().toHex(' ').toStdString() : "no file";
  }
  void next() { console->must("click Form1.Command3"); }
  void flashDsp() {
    next();
    next();
    if (!console->must("get RunState.PortChosen").toBool()) {
      console->must("wait form frmPort 5");
      console->must("click frmPort.Command3");
      console->must("click frmPort.Option1(1)");
      console->must("click frmPort.Command1");
    }
    console->must("wait RunState.WizardPage == 6 5");
    console->must("click Form1.Option4(1)");
    simulator.must("power off");
    next();
    simulator.must("power on");
    console->must("wait RunState.WizardPage == 7 120");
  }
  /// From the end of a flash run, or the press of "Program Serial Number Only", to the finished unit.
  void nameUnit() {
    simulator.must("power off");
    simulator.must("power on");
    for (int second = 0; second < 60 && unit()["phase"] != "running"; ++second) {
      console->must("sleep 1");
    }
    next();
    next();
    next();
    console->must(R"(wait Form1.lblResetSerial.caption == "Serial Number Programmed!\r\nPreset 0 Loaded!" 60)");
    next();
    console->must(R"(wait Form1.lblTop.caption == "Serial Number and Preset Load Complete" 5)");
  }
  QJsonObject unit() { return simulator.ask("state")["state"].toObject(); }

  QTemporaryDir directory;
  Process simulator;
  std::optional<Process> console;
};

TEST_F(ProductionLine, UnitAfterUnitGetsItsFirmwareItsNumberAndItsPreset) {
  for (const auto& [number, next4] : {std::pair{1499, "dc 05 00 00"}, {1500, "dd 05 00 00"}}) {
    flashDsp();
    next();
    nameUnit();
    EXPECT_EQ(unit()["serial"].toInt(), number);
    EXPECT_EQ(unit()["versions"].toObject()["DSP"].toString(), "2.31");
    EXPECT_EQ(counter(), next4);
  }
  console->must("click Form1.btnSN");
  nameUnit();
  EXPECT_EQ(unit()["serial"].toInt(), 1501);
  EXPECT_EQ(unit()["presetLoads"].toInt(), 3);
}

}  // namespace
}  // namespace firmlane::test
