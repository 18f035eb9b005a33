// The about box: what this program is, and its version.
#pragma once

#include "state/form1.h"
#include "state/small_forms.h"

namespace firmlane {

class AboutBox {
 public:
  /// Takes the events of frmAbout.
  AboutBox(FrmAbout& frmAbout, Form1& form1);

 private:
  void Form_Load();

  FrmAbout& frmAbout_;
  Form1& form1_;
};

}  // namespace firmlane
