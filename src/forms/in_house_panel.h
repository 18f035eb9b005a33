// The internal options panel: stands in the main form's place and programs one processor of a wireless receiver.
#pragma once

#include <functional>

#include "state/auto_form.h"
#include "state/form1.h"
#include "state/run_state.h"
#include "state/small_forms.h"

namespace firmlane {

class InHousePanel {
 public:
  /// Takes the events of frmInHouse. `updateReceiver` programs the first processor that is checked on frmAuto.
  InHousePanel(std::function<void()> updateReceiver, RunState& state, Form1& form1, FrmAuto& frmAuto, FrmInHouse& frmInHouse);

 private:
  void go();
  void program();
  [[nodiscard]] CheckBox* checkOf(int option) const;
  [[nodiscard]] std::string verdict() const;
  void askForTheEnd(bool& cancel);

  std::function<void()> updateReceiver_;
  RunState& state_;
  Form1& form1_;
  FrmAuto& frmAuto_;
  FrmInHouse& frmInHouse_;
};

}  // namespace firmlane
