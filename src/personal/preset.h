// Has a unit load preset 0 when its serial number is in, and reports both successes on the page (Timer3).
#pragma once

#include "link/command_set.h"
#include "link/receive_path.h"
#include "personal/unit_answer.h"

namespace firmlane {

class Preset {
 public:
  /// Takes the tick of Timer3.
  Preset(SerialPort& port, CommandSet& commands, ReceivePath& receivePath, UnitAnswer& answer, RunState& state, Form1& form1);

  /// Has the unit load preset 0 and enables Next. The port is open, and stays so. Returns false when the unit did not answer
  /// within 10 s and the user gave up. Throws Failure when the port is gone.
  bool SendPreset0();

  /// A preset load has been started.
  bool PresetPending = false;

 private:
  bool sendAndWait();
  void onTimer3();
  void report(const std::string& text);

  SerialPort& port_;
  CommandSet& commands_;
  ReceivePath& receivePath_;
  UnitAnswer& answer_;
  RunState& state_;
  Form1& form1_;
};

}  // namespace firmlane
