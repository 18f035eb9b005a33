#include "state/form1.h"

namespace firmlane {

Form1::Form1(FormHost& host)
    : Form(host, "Form1", "Tolvex Firmlane"),
      lblFAQ(*this, "lblFAQ", "Click here to launch the FAQ at www.tolvex.example in your browser"),
      lblEmail(*this, "lblEmail", "Enter your email address, such as name@mail.example") {
  for (const char* caption : {"Vel-Arc", "LWX500 2.4 GHz Receiver"}) {
    Option2.add(*this, "Option2", caption, Option2.group).hiddenAtStart();
  }
  for (const char* caption : {"Get Latest Firmware", "Get Latest Software", "Program Velarc Flash Memory",
                              "Show current receiver firmware versions (turn on receiver first!)"}) {
    Option1.add(*this, "Option1", caption, Option1.group).hiddenAtStart();
  }
  for (const char* caption : {"Hub", "DSP", "RF1", "RF2", "Front"}) {
    Option4.add(*this, "Option4", caption, Option4.group, &frmUC);
  }
  for (const char* caption :
       {"LWX-51 (One Channel)", "LWX-52 (Two Channel)", "LWX-51QDR (One Channel)", "LWX-52QDR (Two Channel)"}) {
    Option3.add(*this, "Option3", caption, Option3.group, &frmModel);
  }
  Option1(0).Value.setAtStart(true);
  Option3(0).Value.setAtStart(true);
  Option5.Value.setAtStart(true);

  for (Control* control : std::initializer_list<Control*>{
           &Command1,   &VRCButton, &VRColdButton, &LWXButton,      &LWX300Button,    &frmFS,          &imgGUI,    &imgLWX,
           &lblConnect, &lblStatus, &List1,        &btnVRCrelnotef, &lblFirst,        &txtFirst,       &lblLast,   &txtLast,
           &lblEmail,   &txtEmail,  &frmUC,        &ProgressBar1,   &lblProgressInfo, &lblResetSerial, &lblSerial, &txtNum,
           &btnSerial,  &frmModel,  &btnSN,        &btnMic,         &btnAuto,         &Command4,       &msgcount,  &msglength,
           &msgcode,    &msgtext,   &txtstat,      &txtlen}) {
    control->hiddenAtStart();
  }
}

}  // namespace firmlane
