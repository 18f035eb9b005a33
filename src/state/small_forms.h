// The forms beside the main paths: recovery, about box, factory panel, debug view, number editor.
#pragma once

#include "platform/screen.h"

namespace firmlane {

/// Shown when the unit did not answer: go on without a reading, choose the port again, or stop.
struct FrmRecover : Form {
  explicit FrmRecover(FormHost& host) : Form(host, "frmRecover", "Error connecting to receiver") {}

  Label lblMain{*this, "lblMain"};
  CommandButton btnRecover{*this, "btnRecover", "Recover"};
  CommandButton btnComPort{*this, "btnComPort", "Com Port"};
  CommandButton btnExit{*this, "btnExit", "Exit"};
  /// Clickable.
  Label Label1{*this, "Label1", "Click here to launch the FAQ at www.tolvex.example/Mic_FAQ_LWX_index.htm in your browser"};
};

struct FrmAbout : Form {
  explicit FrmAbout(FormHost& host) : Form(host, "frmAbout", "About Tolvex Firmlane") {}

  Label lblVersion{*this, "lblVersion"};
  Label lblCopyright{*this, "lblCopyright"};
  CommandButton Command1{*this, "Command1", "OK"};
};

/// The factory panel: programs one processor, or the serial number.
struct FrmInHouse : Form {
  explicit FrmInHouse(FormHost& host);

  Label Label1{*this, "Label1", "What would you like to do?"};
  OptionArray optUP;
  CommandButton Command1{*this, "Command1", "GO!"};
  ProgressBar prg{*this, "prg"};
};

/// The debug view of a front panel run.
struct FrmDBUG : Form {
  explicit FrmDBUG(FormHost& host) : Form(host, "frmDBUG", "Debugging") {}

  Label Label1{*this, "Label1", "Front Panel Programming Progress and Status"};
  Label Label2{*this, "Label2", "Programming Stage:"};
  Label lblStage{*this, "lblStage"};
  Label Label3{*this, "Label3", "Number of Program Bytes Sent to Front"};
  Label lblBytes{*this, "lblBytes"};
  Label Label4{*this, "Label4", "Error Messages or Comments"};
  Label lblErrors{*this, "lblErrors"};
  Label Label5{*this, "Label5", "Length Byte1"};
  Label LblL1{*this, "LblL1"};
  Label Label6{*this, "Label6", "Length Byte2"};
  Label lblL2{*this, "lblL2"};
  Label Label7{*this, "Label7", "Highest Byte Sent"};
  Label lblHI{*this, "lblHI"};
  Label Label8{*this, "Label8", "Highest Byte Received"};
  Label lblHIR{*this, "lblHIR"};
};

/// Edits the serial number that will be programmed.
struct NewSerial : Form {
  explicit NewSerial(FormHost& host) : Form(host, "newserial", "Change Serial Number") {}

  Label Label1{*this, "Label1", "Enter the correct serial number below"};
  TextBox Text1{*this, "Text1"};
  CommandButton btnOK{*this, "btnOK", "OK"};
  CommandButton btnCancel{*this, "btnCancel", "CANCEL"};
  CommandButton btnUp{*this, "btnUp", "UP"};
  CommandButton btnDown{*this, "btnDown", "DOWN"};
};

}  // namespace firmlane
