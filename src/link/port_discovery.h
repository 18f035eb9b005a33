// "Com Port Selection": finds the serial port with a unit on it by asking on one after another, or takes the user's word. The
// result is ComPort and PortChosen. It works through the main port and its receive path, which raises PortFound.
#pragma once

#include <cstdint>

#include "link/command_set.h"
#include "link/receive_path.h"
#include "progress/activity.h"
#include "state/frm_port.h"

namespace firmlane {

class PortDiscovery {
 public:
  /// Takes the events of frmPort.
  PortDiscovery(SerialPort& port, CommandSet& commands, ReceivePath& receivePath, Activity& activity, RunState& state,
                FrmPort& frmPort);

  /// Tries ports 1 to 16 and takes the first that a unit answers on; tells the user when there is none. Does nothing while a
  /// search runs. Closing the form ends it.
  void AutoSearch();

  /// Asks on one port, passing events for 200 ms. True when a unit has answered; false also when the port cannot be used, or the
  /// form was closed meanwhile. The port is closed afterwards.
  bool TestPort(std::int16_t port);

 private:
  void Form_Load();
  void Form_Unload();
  void Command1_Click();
  void Command3_Click();

  void openForTest(std::int16_t port);
  void forgetWhatCame();
  /// Passes events for a while. False when the search was given up meanwhile.
  bool wait();
  void endSearch();

  SerialPort& port_;
  CommandSet& commands_;
  ReceivePath& receivePath_;
  Activity& activity_;
  RunState& state_;
  FrmPort& form_;
  int search_ = 0;  // changes when a search is given up, so what is left of it on the stack knows
};

}  // namespace firmlane
