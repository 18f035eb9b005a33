// The debug view of front panel runs. It only places itself; the runs write to its labels. "Highest Byte Received" stays empty,
// as nothing that comes back from a unit is a byte count.
#pragma once

#include "state/form1.h"
#include "state/small_forms.h"

namespace firmlane {

class DebugView {
 public:
  /// Takes the events of frmDBUG.
  DebugView(FrmDBUG& frmDBUG, Form1& form1);

 private:
  void Form_Load();

  FrmDBUG& frmDBUG_;
  Form1& form1_;
};

}  // namespace firmlane
