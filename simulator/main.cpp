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
#include <QCoreApplication>
#include <QJsonDocument>
#include <cstdio>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "console/end_on_signal.h"
#include "console/options.h"
#include "console/replay_bench.h"
#include "console/unit_bench.h"
#include "platform/files.h"
#include "platform/qt/identity.h"
#include "platform/qt/standard_input.h"
#include "replay/script.h"
#include "web/record_files.h"
#include "web/web_console.h"

namespace {

using namespace firmlane;
using namespace firmlane::sim;

constexpr int kWrongOption = 2;

void print(const QJsonObject& line) {
  std::cout << QJsonDocument(line).toJson(QJsonDocument::Compact).toStdString() << std::endl;
}

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
bool command(const std::unique_ptr<UnitBench>& bench, std::optional<Web>& web, const std::string& line) {
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

void writeScript(const SimulatorOptions& options) {
  const Recording recording = readRecording(Files::readText(options.script));
  if (!options.files.empty()) {
    putFiles(recording, shelfWith(options.directory), options.files);
  }
  std::cout << consoleScript(recording);
}

/// As Qt has them: what main is given is not UTF-8 on every system.
std::vector<std::string> arguments() {
  std::vector<std::string> words;
  for (const QString& word : QCoreApplication::arguments().mid(1)) {
    words.push_back(word.toStdString());
  }
  return words;
}

int simulate(const SimulatorOptions& options) {
  std::unique_ptr<UnitBench> bench;
  if (options.model != nullptr) {
    bench = makeUnitBench(options, print);
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
  holdStandardStreams();
  const QCoreApplication application(argc, argv);
  try {
    const SimulatorOptions options = readOptions(arguments());
    if (options.help) {
      std::cout << usage();
      return 0;
    }
    if (options.version) {
      std::cout << versionLine("firmlane-simulator");
      return 0;
    }
    writeImages(options);
    if (!options.script.empty()) {
      writeScript(options);
      return 0;
    }
    if (!options.replay.empty()) {
      return runReplay(options, print);
    }
    if (options.model == nullptr && !options.serve) {
      return 0;
    }
    return simulate(options);
  } catch (const std::exception& failure) {  // Failure, and what the file system throws
    std::cerr << failure.what() << std::endl;
    return kWrongOption;
  }
}
