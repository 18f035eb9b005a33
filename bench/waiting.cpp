// What a waiting program costs: firmlane-console waits 20 s for a boot loader's announcement; its processor time and memory are
// read from the system.
#include <unistd.h>

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <cstdio>
#include <fstream>
#include <string>

namespace {

constexpr int kSeconds = 18;  // of the 20 that the wait lasts

/// Clock ticks of user and system time that a process has had.
long processorTicks(qint64 pid) {
  std::ifstream file("/proc/" + std::to_string(pid) + "/stat");
  std::string word;
  long ticks = 0;
  for (int i = 1; i <= 15 && file >> word; ++i) {
    if (i >= 14) {
      ticks += std::stol(word);
    }
  }
  return ticks;
}

int residentKilobytes(qint64 pid) {
  std::ifstream status("/proc/" + std::to_string(pid) + "/status");
  for (std::string word; status >> word;) {
    if (word == "VmRSS:") {
      int kilobytes = 0;
      status >> kilobytes;
      return kilobytes;
    }
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const QTemporaryDir directory;
  QProcess unit;
  unit.start(PROGRAMS "/firmlane-simulator", {"--unit", "velarc", "--link", directory.filePath("unit"), "--off"});
  unit.waitForReadyRead();
  QProcess console;
  console.start(PROGRAMS "/firmlane-console", {"--dir", directory.path(), "--port", "1=" + directory.filePath("unit")});
  for (const char* line :
       {"click Form1.Command3", "click Form1.VRColdButton", "wait RunState.WizardPage == 0 5", "click Form1.Option1(2)",
        "click Form1.Command3", "click Form1.Command3", "wait form frmPort 5", "click frmPort.Command3", "click frmPort.Command1",
        "wait RunState.WizardPage == 6 5", "click Form1.Command3", "wait Form1.lblTop.caption contains \"Waiting for\" 5"}) {
    console.write(line);
    console.write("\n");
  }
  console.waitForBytesWritten();
  QThread::sleep(1);
  const long before = processorTicks(console.processId());
  QThread::sleep(kSeconds);
  const double seconds =
      static_cast<double>(processorTicks(console.processId()) - before) / static_cast<double>(sysconf(_SC_CLK_TCK));
  std::printf("waiting %d s for an announcement: %.2f s of processor time, %.2f %% of a core; resident %.1f MB\n", kSeconds,
              seconds, 100 * seconds / kSeconds, residentKilobytes(console.processId()) / 1024.0);
  console.kill();
  unit.kill();
  console.waitForFinished();
  unit.waitForFinished();
  return 0;
}
