// A simulated unit at the far end of a pseudo-terminal, in real time or a multiple of it, driven by Qt's event loop: by that of
// firmlane-simulator, or by the one that the demo's event source runs.
#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include "live/unit_time.h"
#include "pty/pseudo_terminal.h"
#include "units/unit.h"

namespace firmlane::sim {

class PtyUnit : public QObject, private UnitLine {
 public:
  /// `timeScale`: the unit's time, its bytes' included, runs this many times as fast. Throws Failure without a pseudo-terminal.
  explicit PtyUnit(const UnitModel& model, double timeScale = 1);
  ~PtyUnit() override;
  PtyUnit(const PtyUnit&) = delete;
  PtyUnit& operator=(const PtyUnit&) = delete;

  /// The device that the program opens.
  [[nodiscard]] const std::string& path() const { return terminal_.path(); }
  /// Pulls the adapter between the program and the unit, for good.
  void pull();

 private:
  void listen();
  void watchForProgram();
  void send(ByteSpan bytes, int baud) override;
  void holdBack(bool held) override;
  [[nodiscard]] std::optional<LineSettings> programEnd() const override;

  PseudoTerminal terminal_;
  UnitTime time_;
  QSocketNotifier notifier_;
  QTimer reopenWatch_;     // no notifier tells that a program opens the device
  Micros lineFreeAt_ = 0;  // when the last byte under way will have arrived
  bool held_ = false;
  bool hearing_ = false;

 public:
  Unit unit;
};

}  // namespace firmlane::sim
