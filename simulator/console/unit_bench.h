// The simulated unit of firmlane-simulator, with the lines that work it.
#pragma once

#include <memory>
#include <string>

#include "console/options.h"
#include "console/unit_console.h"

namespace firmlane::sim {

class UnitBench {
 public:
  virtual ~UnitBench() = default;
  /// Carries out a line. False when it ends the simulator.
  virtual bool command(const std::string& line) = 0;
};

/// Puts the unit of the options where a program can open it as a serial port, and prints where. Throws Failure where the system
/// has no such place.
std::unique_ptr<UnitBench> makeUnitBench(const SimulatorOptions& options, const std::function<void(const QJsonObject&)>& print);

}  // namespace firmlane::sim
