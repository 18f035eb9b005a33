#include "console/replay_bench.h"

#include <QCoreApplication>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <optional>
#include <set>

#include "console/device_link.h"
#include "console/end_on_signal.h"
#include "platform/files.h"
#include "platform/qt/standard_input.h"
#include "pty/pty_replay.h"
#include "web/record_files.h"
#include "web/replay_web.h"

namespace firmlane::sim {

namespace {

constexpr std::chrono::milliseconds kLookForEnd{100};
constexpr int kLooks = 50;

QString shown(const std::string& text) { return QString::fromStdString(text); }

/// Where an adapter that was lost is there again: a pseudo-terminal that has gone does not come back under its name. The end of
/// the entries when none is.
std::vector<Entry>::iterator pluggedInAgain(Recording& recording) {
  std::set<int> lost;
  return std::find_if(recording.entries.begin(), recording.entries.end(), [&lost](const Entry& entry) {
    if (entry.kind == "lost") {
      lost.insert(entry.port());
    }
    return entry.kind == "open" && lost.contains(entry.port());
  });
}

/// A record with its ports and its web server.
class ReplayBench {
 public:
  /// Reads the record and makes its ports; tells of each with `print`. Throws Failure for a record that cannot be read.
  ReplayBench(const SimulatorOptions& options, std::function<void(const QJsonObject&)> print);

  /// The device of the record's first port; empty when it had none.
  [[nodiscard]] std::string device() const;
  /// Begins to play. At the end, or at the first difference, the application ends with status 0 or 1.
  void start();
  /// Ends the application; what has not been played by now counts as a difference.
  void stop();
  [[nodiscard]] bool agrees() const { return line_.replay.difference().empty(); }

 private:
  void tellEnd();

  std::function<void(const QJsonObject&)> print_;
  Recording recording_;
  Shelf shelf_;
  PtyReplay line_;
  std::optional<ReplayWeb> web_;
  QTimer leaving_;
  int looksLeft_ = kLooks;
};

ReplayBench::ReplayBench(const SimulatorOptions& options, std::function<void(const QJsonObject&)> print)
    : print_(std::move(print)),
      recording_(readRecording(Files::readText(options.replay))),
      shelf_(shelfWith(options.directory)),
      line_(recording_, options.timeScale) {
  for (const auto& [port, device] : line_.devices()) {
    print_({{"pty", shown(device)}, {"port", port}});
  }
  if (std::any_of(recording_.entries.begin(), recording_.entries.end(), [](const Entry& entry) { return entry.kind == "get"; })) {
    web_.emplace(recording_, shelf_, line_.replay, options.webPort);
    web_->onRequest = [this](const std::string& url) { line_.observeRequest(url); };
    line_.onAnswer = [this](const Entry& entry) { return web_->answer(entry); };
    print_({{"server", shown(web_->url())}});
  }
  if (recording_.dropped > 0) {
    print_({{"note", shown(std::to_string(recording_.dropped) + " entries from before the first one are missing")}});
  }
  if (const auto again = pluggedInAgain(recording_); again != recording_.entries.end()) {
    print_({{"note", shown("line " + std::to_string(again->line) +
                           ": the adapter is there again; from here on the record can be played in virtual time only")}});
    recording_.entries.erase(again, recording_.entries.end());
  }
  if (!recording_.complete) {
    print_({{"note", "the record is cut: its last line is missing"}});
  }
}

std::string ReplayBench::device() const {
  const auto devices = line_.devices();
  return devices.empty() ? std::string() : devices.begin()->second;
}

void ReplayBench::start() {
  print_({{"replay", "begins"}});
  line_.replay.onOver = [this] { tellEnd(); };
  line_.replay.start();
}

void ReplayBench::stop() {
  line_.replay.end("the program has not come so far");
  if (line_.replay.over() && line_.replay.difference().empty()) {
    QCoreApplication::exit(0);
  }
}

void ReplayBench::tellEnd() {
  const std::string& difference = line_.replay.difference();
  print_(difference.empty() ? QJsonObject{{"replay", "done"}}
                            : QJsonObject{{"replay", "difference"}, {"text", shown(difference)}});
  if (!difference.empty()) {
    QTimer::singleShot(0, [] { QCoreApplication::exit(1); });  // the event loop may not have begun
    return;
  }
  // A program that has still to look at the last answer must not find its adapter gone.
  leaving_.callOnTimeout([this] {
    if (!line_.inUse() || --looksLeft_ == 0) {
      QCoreApplication::exit(0);
    }
  });
  leaving_.start(kLookForEnd);
}

}  // namespace

int runReplay(const SimulatorOptions& options, const std::function<void(const QJsonObject&)>& print) {
  ReplayBench bench(options, print);
  const DeviceLink link(options.link, bench.device());
  const EndOnSignal endOnSignal;
  const StandardInput input(
      [&bench](const std::string& line) {
        if (line == "quit") {
          bench.stop();
        }
      },
      [&bench] { bench.stop(); }, StandardInput::EndOfFile::MeansNoLines);
  bench.start();
  const int status = QCoreApplication::exec();
  bench.stop();  // a signal may have ended it
  return bench.agrees() ? status : 1;
}

}  // namespace firmlane::sim
