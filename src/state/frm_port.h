// "Com Port Selection": the user searches for the port with the unit on it, or picks one.
#pragma once

#include "platform/screen.h"

namespace firmlane {

inline constexpr int kPortCount = 16;

struct FrmPort : Form {
  explicit FrmPort(FormHost& host);

  CommandButton Command2{*this, "Command2", "Auto-Find Port"};
  CommandButton Command3{*this, "Command3", "Manually Select Port"};
  Label Label1{*this, "Label1", "Please select your COM port"};
  OptionArray Option1;
  CommandButton Command1{*this, "Command1", "OK"};

  /// One-shot: ends the waits of a port test.
  Timer& Timer1 = addTimer();
};

}  // namespace firmlane
