// The window of the auto wizards. One layout serves the wireless receivers (frmAuto) and the Velarc2 (frmVRCAuto); the product's
// own controls stand in the two structs below.
#pragma once

#include <array>

#include "platform/screen.h"

namespace firmlane {

struct AutoForm : Form {
  AutoForm(FormHost& host, const std::string& name, const std::string& unit);

  Label lblMain{*this, "lblMain"};
  Label lblReset;
  Label lblBottom{*this, "lblBottom"};
  OutcomeLabel lblOutcome{*this, "lblOutcome"};
  CommandButton btnBack{*this, "btnBack", "<< Back"};
  CommandButton btnNext{*this, "btnNext", "Next >>"};
  CommandButton cmdQuit{*this, "cmdQuit", "Exit"};
  CommandButton btnMore;
  CommandButton btnRelNote{*this, "btnRelNote", "View Release Notes"};
  CheckBox ChkOffline{*this, "ChkOffline", ""};
  CheckBox chkReceiver{*this, "chkReceiver", ""};
  PictureBox imgDL{*this, "imgDL", "imgDL"};
  PictureBox imgFlash{*this, "imgFlash", "imgFlash"};
  PictureBox Cover;
  ListBox VersionList{*this, "VersionList"};
  ProgressBar Progress1{*this, "Progress1"};
  ProgressBar prgTotal{*this, "prgTotal"};
  Label lblTotal{*this, "lblTotal", "Overall Progress"};
  Label lblPage{*this, "lblPage"};

  // The version table, hidden for good: column heads, rows, marks.
  Label Label5{*this, "Label5", "Processor"};
  Label Label3{*this, "Label3", "Current Version"};
  Label Label4;
  Label Label6{*this, "Label6", "Update?"};
  Label Label2{*this, "Label2", "DSP"};
  Label Label8{*this, "Label8", "HUB"};
  Label Label11{*this, "Label11", "RF1"};
  Label Label10{*this, "Label10", "RF2"};
  Label Label14{*this, "Label14", "LCD"};
  Label DSPC{*this, "DSPC", "0.0"};
  Label DSP1{*this, "DSP1", "0.0"};
  Label HUBC{*this, "HUBC", "0.0"};
  Label HUB1{*this, "HUB1", "0.0"};
  Label LCDC{*this, "LCDC", "0.0"};
  Label LCD1{*this, "LCD1", "0.0"};
  CheckBox Check1{*this, "Check1", "NO"};
  CheckBox Check2{*this, "Check2", "NO"};
  CheckBox Check3{*this, "Check3", "NO"};
  CheckBox Check4{*this, "Check4", "NO"};
  CheckBox Check5{*this, "Check5", "NO"};
  Frame Shape1{*this, "Shape1", ""};
  Frame Shape2{*this, "Shape2", ""};
  Frame Shape3{*this, "Shape3", ""};
  Frame Shape4{*this, "Shape4", ""};
  Frame Shape5{*this, "Shape5", ""};

  // Diagnosis: times of day at which the unit asked and was answered.
  Label Label7{*this, "Label7", "Queried"};
  TextBox txtQtime{*this, "txtQtime"};
  Label Label9{*this, "Label9", "Sent"};
  TextBox txtSent{*this, "txtSent"};

  /// Time limit for reading the unit.
  Timer& Watch = addTimer();

  /// Check1 to Check5 in their order.
  [[nodiscard]] std::array<CheckBox*, 5> checks() { return {&Check1, &Check2, &Check3, &Check4, &Check5}; }
};

struct FrmAuto : AutoForm {
  explicit FrmAuto(FormHost& host);

  Label RFC{*this, "RFC", "0.0"};
  Label RF1{*this, "RF1", "0.0"};
  Label RF2C{*this, "RF2C", "0.0"};
  Label RF2{*this, "RF2", "0.0"};
  CommandButton btnDetails{*this, "btnDetails", "Show Advanced Options"};

  // The list of steps behind the cover, one light a step.
  Label Label1{*this, "Label1", "Steps Required"};
  Label lblStep1{*this, "lblStep1", "1 - Connect to Tolvex"};
  Label lblStep2{*this, "lblStep2", "2 - Get Latest Version Info"};
  Label lblStep3{*this, "lblStep3", "3 - Get Receiver Versions"};
  Label lblStep4{*this, "lblStep4", "4 - Select Updates"};
  Label lblStep5{*this, "lblStep5", "5 - Download Firmware"};
  Label lblStep6{*this, "lblStep6", "6 - Program Processors"};
  Label lblStep7{*this, "lblStep7", "7 - Confirm Updates OK"};
  PictureBox step1{*this, "step1", "red"};
  PictureBox step2{*this, "step2", "red"};
  PictureBox Step3{*this, "Step3", "red"};
  PictureBox step4{*this, "step4", "red"};
  PictureBox step5{*this, "step5", "red"};
  PictureBox step6{*this, "step6", "red"};
  PictureBox step7{*this, "step7", "red"};
  PictureBox green{*this, "green", "green"};
  PictureBox red{*this, "red", "red"};
};

struct FrmVRCAuto : AutoForm {
  explicit FrmVRCAuto(FormHost& host);

  Label Front1C{*this, "Front1C", "0.0"};
  Label Front1{*this, "Front1", "0.0"};
  Label Front2C{*this, "Front2C", "0.0"};
  Label Front2{*this, "Front2", "0.0"};
  // Service buttons, each for one processor; no page shows them.
  CommandButton btnHUB{*this, "btnHUB", "HUB only"};
  CommandButton btnDSP{*this, "btnDSP", "DSP only"};
  CommandButton btnF1{*this, "btnF1", "Front A only"};
  CommandButton btnF2{*this, "btnF2", "Front B only"};
};

}  // namespace firmlane
