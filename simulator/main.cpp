// firmlane-simulator: a simulated unit on a pseudo-terminal, and the maker's web server on loopback.
//
//   firmlane-simulator --unit lwx52 --link /tmp/unit --dir /tmp/firmware --make-images 2.31
//   firmlane-console --dir /tmp/firmware --port 1=/tmp/unit
//
//   firmlane-simulator --serve --port 8080
//   firmlane-console --server http://127.0.0.1:8080 --registration-server http://127.0.0.1:8080
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
#include <optional>

#include "console/options.h"
#include "console/unit_console.h"
#include "platform/qt/standard_input.h"
#include "pty/pty_unit.h"
#include "web/web_console.h"

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

/// A unit on its pseudo-terminal, with the lines that work it.
class Bench {
 public:
  explicit Bench(const SimulatorOptions& options) : unit_(*options.model, options.timeScale), link_(options.link, unit_.path()) {
    print({{"pty", QString::fromStdString(unit_.path())}, {"unit", options.model->name}});
    console_.emplace(unit_.unit, print);
    unit_.unit.faults = options.faults;
    if (!options.startsOff) {
      unit_.unit.startRunning();
    }
  }
  bool command(const std::string& line) { return console_->command(line); }

 private:
  PtyUnit unit_;
  Link link_;
  std::optional<UnitConsole> console_;  // once the unit has been told of
};

/// The web server, with the lines that work it.
class Web {
 public:
  explicit Web(const SimulatorOptions& options) : server_(options.webPort) {
    print({{"server", QString::fromStdString(server_.url())}});
  }
  bool command(const std::string& line) { return console_.command(line); }

 private:
  WebServer server_;
  WebConsole console_{server_, print};
};

/// Carries out a line. False when it ends the simulator.
bool command(std::optional<Bench>& bench, std::optional<Web>& web, const std::string& line) {
  if (line.empty() || (web && web->command(line))) {
    return true;
  }
  if (bench) {
    return bench->command(line);
  }
  const bool goesOn = line != "quit";
  print(goesOn ? QJsonObject{{"ok", false}, {"error", "bad command"}} : QJsonObject{{"ok", true}});
  return goesOn;
}

int simulate(const SimulatorOptions& options) {
  std::optional<Bench> bench;
  if (options.model != nullptr) {
    bench.emplace(options);
  }
  std::optional<Web> web;
  if (options.serve) {
    web.emplace(options);
  }
  const EndOnSignal endOnSignal;
  const StandardInput input(
      [&](const std::string& line) {
        if (!command(bench, web, line)) {
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
    if (options.model == nullptr && !options.serve) {
      return 0;
    }
    const QCoreApplication application(argc, argv);
    return simulate(options);
  } catch (const std::exception& failure) {  // Failure, and what the file system throws
    std::cerr << failure.what() << std::endl;
    return kWrongOption;
  }
}
