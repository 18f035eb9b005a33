// The unit of a record on pseudo-terminals, one for each port that the record's program had open, in real time or a multiple of
// it. Somebody else works the program; the web server of the record is another's business too.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <functional>
#include <map>
#include <memory>

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
  /// What the web server of the record said: set by whoever plays that. Returns why it cannot be said, or nothing.
  std::function<std::optional<std::string>(const Entry& entry)> onAnswer;

 private:
  void look();
  [[nodiscard]] Micros now() const override;
  void after(Micros span, std::function<void()> action) override;
  std::optional<std::string> perform(const Entry& entry) override;
  [[nodiscard]] bool holds(const Entry& entry) const override;

  double timeScale_;
  std::map<int, std::unique_ptr<PseudoTerminal>> terminals_;
  QElapsedTimer clock_;
  QTimer looking_;

 public:
  Replay replay;
};

}  // namespace firmlane::sim
