// How a factory procedure ends: the page and the flags are made ready for the next unit.
#pragma once

#include <cstdint>
#include <string>

#include "link/receive_path.h"
#include "personal/preset.h"
#include "progress/supervision.h"

namespace firmlane {

/// Where the production line's units are connected.
inline constexpr std::int16_t kFactoryPort = 2;

class FactoryLine {
 public:
  FactoryLine(SerialPort& port, ReceivePath& receivePath, Preset& preset, Supervision& supervision, WizardInCharge& wizard,
              RunState& state, Form1& form1);

  /// Clears the flags of the serial number procedure, hides its text and the bar, shows lblTop.
  void endProcedure();

  /// Closes the port, shows `verdict` with the factory buttons, and has Next begin with the next unit.
  void readyForNext(const std::string& verdict);

  /// Ends a procedure that did not go well: as the two above, with `why` told as its outcome too.
  void giveUp(const std::string& why);

  /// What page 7 shows when Next ends a procedure that went well.
  [[nodiscard]] std::string verdict() const;

  /// Whether a run has the line now. The factory buttons stay on screen during a run and must not disturb it.
  [[nodiscard]] bool busy() const { return port_.IsOpen() && !form1_.Command3.Enabled; }

  void showButtons();
  void hideButtons();
  /// Clears the page for a procedure, which may begin from any page of a flash run.
  void takeScreen();

 private:
  SerialPort& port_;
  ReceivePath& receivePath_;
  Preset& preset_;
  Supervision& supervision_;
  WizardInCharge& wizard_;
  RunState& state_;
  Form1& form1_;
};

}  // namespace firmlane
