// The wizard for receivers of the wireless line: the engine with the receiver's parameters, and the button for the advanced
// options that only this window has.
#pragma once

#include "wizard/auto/auto_wizard.h"

namespace firmlane {

const ProductParameters& wirelessParameters();
WizardWindow wirelessWindow(FrmAuto& form);

class WirelessWizard {
 public:
  WirelessWizard(const AutoWizardSetting& setting, AutoWizardTies ties, FrmAuto& form);

  void UpdateReceiver() { wizard_.UpdateReceiver(); }
  void LaunchFAQ() { wizard_.LaunchFAQ(); }

 private:
  void btnDetails_Click();
  void HideOptions();
  void ShowOptions();

  RunState& state_;
  FrmAuto& form_;
  AutoWizard wizard_;
};

}  // namespace firmlane
