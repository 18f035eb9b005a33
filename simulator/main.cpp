// firmlane-simulator: a simulated unit on a pseudo-terminal.
//
//   firmlane-simulator --unit lwx52 --link /tmp/unit --dir /tmp/firmware --make-images 2.31
//   firmlane-console --dir /tmp/firmware --port 1=/tmp/unit
//
// It prints {"pty":"/dev/pts/3","unit":"lwx52"} when the unit is there, then a line for each thing that happens in it, and takes
// commands on standard input. --help lists options, units, faults and commands.
#include <signal.h>

#include <QCoreApplication>
#include <QJsonDocument>
#include <QTimer>
#include <cstdio>
#include <filesystem>
#include <iostream>

#include "console/options.h"
#include "console/unit_console.h"
#include "platform/qt/standard_input.h"
#include "pty/pty_unit.h"

namespace {

using namespace firmlane;
using namespace firmlane::sim;

constexpr int kWrongOption = 2;

void print(const QJsonObject& line) {
  std::cout << QJsonDocument(line).toJson(QJsonDocument::Compact).toStdString() << std::endl;
}

/// A symbolic link that stands as long as the simulator runs.
class Link {
 public:
  Link(const std::string& path, const std::string& target) : path_(path) {
    if (path_.empty()) {
      return;
    }
    if (std::filesystem::is_symlink(path_)) {
      std::filesystem::remove(path_);
    }
    std::filesystem::create_symlink(target, path_);
  }
  ~Link() {
    std::error_code error;
    if (!path_.empty()) {
      std::filesystem::remove(path_, error);
    }
  }
  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;

 private:
  std::string path_;
};

/// Ends the event loop on SIGINT and SIGTERM, so that the link is removed. The signals stay blocked and are looked for.
class EndOnSignal {
 public:
  EndOnSignal() {
    sigset_t ends;
    sigemptyset(&ends);
    sigaddset(&ends, SIGINT);
    sigaddset(&ends, SIGTERM);
    sigprocmask(SIG_BLOCK, &ends, nullptr);
    timer_.callOnTimeout([] {
      sigset_t pending;
      sigpending(&pending);
      if (sigismember(&pending, SIGINT) == 1 || sigismember(&pending, SIGTERM) == 1) {
        QCoreApplication::quit();
      }
    });
    constexpr std::chrono::milliseconds kLook{100};
    timer_.start(kLook);
  }

 private:
  QTimer timer_;
};

int simulate(const SimulatorOptions& options) {
  PtyUnit bench(*options.model, options.timeScale);
  const Link link(options.link, bench.path());
  print({{"pty", QString::fromStdString(bench.path())}, {"unit", options.model->name}});

  UnitConsole console(bench.unit, print);
  bench.unit.faults = options.faults;
  if (!options.startsOff) {
    bench.unit.startRunning();
  }
  const EndOnSignal endOnSignal;
  const StandardInput input(
      [&console](const std::string& line) {
        if (!console.command(line)) {
          QCoreApplication::quit();
        }
      },
      [] { QCoreApplication::quit(); }, StandardInput::EndOfFile::MeansNoLines);
  return QCoreApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const SimulatorOptions options = readOptions({argv + 1, argv + argc});
    if (options.help) {
      std::cout << usage();
      return 0;
    }
    writeImages(options);
    if (options.model == nullptr) {
      return 0;
    }
    const QCoreApplication application(argc, argv);
    return simulate(options);
  } catch (const std::exception& failure) {  // Failure, and what the file system throws
    std::cerr << failure.what() << std::endl;
    return kWrongOption;
  }
}
