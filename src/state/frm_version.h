// "Firmware Versions": what the connected unit says of itself.
#pragma once

#include "platform/screen.h"

namespace firmlane {

struct FrmVersion : Form {
  explicit FrmVersion(FormHost& host) : Form(host, "frmVersion", "Firmware Versions") {}

  Label Label1{*this, "Label1", "Receiver Serial #"};
  Label lblSN{*this, "lblSN", "0.0"};
  Label Label2{*this, "Label2", "Processor Name"};
  Label Label3{*this, "Label3", "Firmware Version"};
  Label Label4{*this, "Label4", "Hub Processor"};
  Label lblHub{*this, "lblHub", "0.0"};
  Label Label5{*this, "Label5", "DSP Processor"};
  Label lblDSP{*this, "lblDSP", "0.0"};
  Label Label6{*this, "Label6", "RF1 Processor"};
  Label lblRF1{*this, "lblRF1", "0.0"};
  Label Label7{*this, "Label7", "RF2 Processor"};
  Label lblRF2{*this, "lblRF2", "0.0"};
  Label Label8{*this, "Label8", "Front panel Processor"};
  Label lblFront{*this, "lblFront", "0.0"};
  CommandButton Command1{*this, "Command1", "Try Again"};

  /// The retry clock.
  Timer& Timer1 = addTimer();
};

}  // namespace firmlane
