#include "state/auto_form.h"

namespace firmlane {

namespace {
constexpr int kMainHeight = 3375;

template <typename... Controls>
void hideAtStart(Controls&... controls) {
  (controls.hiddenAtStart(), ...);
}
}  // namespace

AutoForm::AutoForm(FormHost& host, const std::string& name, const std::string& unit)
    : Form(host, name, "Tolvex Firmlane"),
      lblReset(*this, "lblReset", "Waiting for " + unit + " reset..."),
      btnMore(*this, "btnMore", "Program another " + unit),
      Cover(*this, "Cover", name + "Cover"),
      Label4(*this, "Label4", "Version in connected receiver") {
  lblMain.Height.setAtStart(kMainHeight);
  hideAtStart(lblReset, lblBottom, btnMore, btnRelNote, ChkOffline, chkReceiver, imgDL, imgFlash, VersionList, Progress1,
              prgTotal, lblTotal);
  hideAtStart(Label5, Label3, Label4, Label6, Label2, Label8, Label11, Label10, Label14, DSPC, DSP1, HUBC, HUB1, LCDC, LCD1);
  hideAtStart(Check1, Check2, Check3, Check4, Check5, Shape1, Shape2, Shape3, Shape4, Shape5, Label7, txtQtime, Label9, txtSent);
}

FrmAuto::FrmAuto(FormHost& host) : AutoForm(host, "frmAuto", "receiver") {
  hideAtStart(RFC, RF1, RF2C, RF2, btnDetails, Label1, lblStep1, lblStep2, lblStep3, lblStep4, lblStep5, lblStep6, lblStep7);
  hideAtStart(step1, step2, Step3, step4, step5, step6, step7, green, red);
  // Greyed as long as their option is unchecked.
  for (Label* step : {&lblStep1, &lblStep2, &lblStep3, &lblStep4, &lblStep5, &lblStep6, &lblStep7}) {
    step->disabledAtStart();
  }
}

FrmVRCAuto::FrmVRCAuto(FormHost& host) : AutoForm(host, "frmVRCAuto", "Velarc") {
  hideAtStart(Front1C, Front1, Front2C, Front2, btnHUB, btnDSP, btnF1, btnF2);
}

}  // namespace firmlane
