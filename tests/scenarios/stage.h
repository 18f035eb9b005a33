// The whole program in virtual time, with a simulated unit on its port and a web server that has the releases.
#pragma once

#include <memory>
#include <string>

#include "app/program.h"
#include "releases.h"
#include "units/virtual_unit.h"
#include "world.h"

namespace firmlane::test {

/// The ground as a program stands on it.
Platform platformOver(Ground& ground);
/// "Hub=2.40 DSP=2.31": what the unit's processors hold.
std::string versionsOf(const sim::Unit& unit);

class Stage : public Ground {
 public:
  /// The unit hangs on port 3 and runs.
  Stage(Line line, const std::string& model);

  Line line;
  VirtualWire& wire = wires.add(3);
  std::unique_ptr<sim::VirtualUnit> bench;
  std::unique_ptr<Program> program;

  [[nodiscard]] sim::Unit& unit() { return bench->unit; }
  [[nodiscard]] const RunState& state() const { return program->state(); }
  [[nodiscard]] AutoForm& form() const;
  /// Hangs another unit on the port.
  void connect(const std::string& model);
  /// Starts the program and goes to the options page of the wizard.
  void start();
  /// A box, or the top form's name, the wizard's page ("page 4") and the labels that show.
  [[nodiscard]] std::string screenText() const;
};

}  // namespace firmlane::test
