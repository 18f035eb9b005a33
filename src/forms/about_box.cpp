#include "forms/about_box.h"

#include "state/text.h"

namespace firmlane {

AboutBox::AboutBox(FrmAbout& frmAbout, Form1& form1) : frmAbout_(frmAbout), form1_(form1) {
  frmAbout.OnLoad = [this] { Form_Load(); };
  frmAbout.Command1.OnClick = [this] { frmAbout_.Unload(); };
}

void AboutBox::Form_Load() {
  frmAbout_.Top = form1_.Top;
  frmAbout_.Left = form1_.Left;
  frmAbout_.lblVersion.Caption =
      "LWX Firmlane Version " + dotted(kVersionMajor, kVersionMinor) + " Build " + std::to_string(kVersionRevision);
  frmAbout_.lblCopyright.Caption = "Copyright (c) 2026 the Firmlane authors";
}

}  // namespace firmlane
