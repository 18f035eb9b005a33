// A simulated unit at the far end of a pseudo-terminal, in real time or a multiple of it, driven by Qt's event loop: by that of
// firmlane-simulator, or by the one that the demo's event source runs.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QSocketNotifier>
#include <QTimer>
#include <functional>
#include <map>

#include "pty/pseudo_terminal.h"
#include "units/unit.h"

namespace firmlane::sim {

class PtyUnit : public QObject, private UnitLine, private UnitClock {
 public:
  /// `timeScale`: the unit's time, its bytes' included, runs this many times as fast. Throws Failure without a pseudo-terminal.
  explicit PtyUnit(const UnitModel& model, double timeScale = 1);
  ~PtyUnit() override;
  PtyUnit(const PtyUnit&) = delete;
  PtyUnit& operator=(const PtyUnit&) = delete;

  /// The device that the program opens.
  [[nodiscard]] const std::string& path() const { return terminal_.path(); }

 private:
  void listen();
  void watchForProgram();
  void send(ByteSpan bytes, int baud) override;
  void holdBack(bool held) override;
  [[nodiscard]] std::optional<LineSettings> programEnd() const override;
  [[nodiscard]] Micros now() const override;
  void after(Micros span, std::function<void()> action) override;
  void runDue();
  void setAlarm();

  PseudoTerminal terminal_;
  double timeScale_;
  QElapsedTimer clock_;
  QSocketNotifier notifier_;
  std::multimap<Micros, std::function<void()>> planned_;
  QTimer alarm_;           // for the first of them
  QTimer reopenWatch_;     // no notifier tells that a program opens the device
  Micros lineFreeAt_ = 0;  // when the last byte under way will have arrived
  bool held_ = false;
  bool hearing_ = false;

 public:
  Unit unit;
};

}  // namespace firmlane::sim
