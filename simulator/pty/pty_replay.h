// The unit of a record on pseudo-terminals, one for each port that the record's program had open, in real time or a multiple of
// it. Somebody else works the program; the web server of the record is another's business too.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <deque>
#include <functional>
#include <map>
#include <memory>

#include "pty/open_watch.h"
#include "pty/pseudo_terminal.h"
#include "replay/replay.h"

namespace firmlane::sim {

class PtyReplay : public QObject, private ReplayStage {
 public:
  /// The recording outlives it. The record's time runs `timeScale` times as fast. Throws Failure without pseudo-terminals.
  PtyReplay(const Recording& recording, double timeScale);
  ~PtyReplay() override;
  PtyReplay(const PtyReplay&) = delete;
  PtyReplay& operator=(const PtyReplay&) = delete;

  /// Port numbers of the record and the devices that stand for them.
  [[nodiscard]] std::map<int, std::string> devices() const;
  /// Whether the program has any of the ports open.
  [[nodiscard]] bool inUse() const;
  /// What the web server of the record said: set by whoever plays that. Returns why it cannot be said, or nothing.
  std::function<std::optional<std::string>(const Entry& entry)> onAnswer;
  /// The program has asked for a page, and has done with its ports what it did before.
  void observeRequest(const std::string& url);

 private:
  void look();
  [[nodiscard]] Micros now() const override;
  void after(Micros span, std::function<void()> action) override;
  std::optional<std::string> perform(const Entry& entry) override;
  bool takes(const Entry& entry) override;
  [[nodiscard]] std::string movedOn(int port) const override;

  /// The far end of a port, and what the program has done with its end that the player has not asked for yet.
  struct Line {
    PseudoTerminal terminal;
    OpenWatch watch{terminal.path()};
    std::deque<bool> changes;  // true for opened, false for closed
    std::size_t old = 0;       // how many of them were there when its bytes were read last

    void look();
  };
  [[nodiscard]] Line* lineOf(int port) const;

  double timeScale_;
  std::map<int, std::unique_ptr<Line>> lines_;  // null when its adapter has gone, as in the record
  QElapsedTimer clock_;
  QTimer looking_;

 public:
  Replay replay;
};

}  // namespace firmlane::sim
