// The main form: the classic wizard's window, and owner of the timers that supervise every long operation.
#pragma once

#include "platform/screen.h"

namespace firmlane {

struct Form1 : Form {
  explicit Form1(FormHost& host);

  // Page text and the buttons that every page has.
  Label lblTop{*this, "lblTop"};
  OutcomeLabel lblOutcome{*this, "lblOutcome"};
  CommandButton Command3{*this, "Command3", "Next >>"};
  CommandButton Command2{*this, "Command2", "Exit"};
  CommandButton Command5{*this, "Command5", "About"};
  CommandButton Command1{*this, "Command1", "More Options"};
  Label lblFAQ;

  // Choice of product.
  CommandButton VRCButton{*this, "VRCButton", "Vel-Arc2"};
  CommandButton VRColdButton{*this, "VRColdButton", "Vel-Arc"};
  CommandButton LWXButton{*this, "LWXButton", "LWX Wireless Receiver"};
  CommandButton LWX300Button{*this, "LWX300Button", "LWX 300 Wireless Receiver"};
  OptionArray Option2;

  // Choice of task.
  Frame frmFS{*this, "frmFS", ""};
  OptionGroup frmFSOptions;
  OptionButton Option5{*this, "Option5", "Upgrade Firmware", frmFSOptions, &frmFS};
  OptionButton Option6{*this, "Option6", "Upgrade Remote Software", frmFSOptions, &frmFS};
  PictureBox imgGUI{*this, "imgGUI", "imgGUI"};
  PictureBox imgLWX{*this, "imgLWX", "imgLWX"};
  PictureBox Image2{*this, "Image2", "Image2"};
  OptionArray Option1;

  // Update lists and downloads.
  Label lblConnect{*this, "lblConnect", "Connecting to Tolvex......"};
  Label lblStatus{*this, "lblStatus"};
  ListBox List1{*this, "List1"};
  CommandButton btnVRCrelnotef{*this, "btnVRCrelnotef", "View Release Notes"};
  Label lblFirst{*this, "lblFirst", "Enter your First Name"};
  TextBox txtFirst{*this, "txtFirst"};
  Label lblLast{*this, "lblLast", "Enter your last name"};
  TextBox txtLast{*this, "txtLast"};
  Label lblEmail;
  TextBox txtEmail{*this, "txtEmail"};

  // Flash run.
  Frame frmUC{*this, "frmUC", "Select Processor to Flash"};
  OptionArray Option4;
  ProgressBar ProgressBar1{*this, "ProgressBar1"};
  Label lblProgressInfo{*this, "lblProgressInfo"};

  // Factory procedures.
  Label lblResetSerial{*this, "lblResetSerial"};
  Label lblSerial{*this, "lblSerial", "Serial Number"};
  TextBox txtNum{*this, "txtNum"};
  CommandButton btnSerial{*this, "btnSerial", "Edit Number"};
  Frame frmModel{*this, "frmModel", "Which Model is this Unit?"};
  OptionArray Option3;
  CommandButton btnSN{*this, "btnSN", "Program Serial Number Only"};
  CommandButton btnMic{*this, "btnMic", "Program Mic Models"};

  // Service buttons and diagnosis; hidden in every build.
  CommandButton btnAuto{*this, "btnAuto", "Auto"};
  CommandButton Command4{*this, "Command4", "RF Flash"};
  Label lblPage{*this, "lblPage"};
  TextBox msgcount{*this, "msgcount"};
  TextBox msglength{*this, "msglength"};
  TextBox msgcode{*this, "msgcode"};
  TextBox msgtext{*this, "msgtext"};
  TextBox txtstat{*this, "txtstat"};
  TextBox txtlen{*this, "txtlen"};

  /// Gives every wait its limit. Ticks count towards TimedOut.
  Timer& Watchdog = addTimer();
  /// Keeps the bar moving while nothing can be measured.
  Timer& Timer1 = addTimer();
  /// Makes the short delays.
  Timer& Delaytimer = addTimer();
  /// Reports serial number and preset.
  Timer& Timer3 = addTimer();
};

}  // namespace firmlane
