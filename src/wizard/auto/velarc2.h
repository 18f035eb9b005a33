// The wizard for the Velarc2: the engine with the Velarc2's parameters, and four service buttons that program one processor each.
#pragma once

#include "wizard/auto/auto_wizard.h"

namespace firmlane {

const ProductParameters& velarc2Parameters();
WizardWindow velarc2Window(FrmVRCAuto& form);

class Velarc2Wizard {
 public:
  Velarc2Wizard(const AutoWizardSetting& setting, AutoWizardTies ties, FrmVRCAuto& form);

 private:
  struct ServiceRun {
    const char* ProcessorNo;
    int option;
    const char* done;
  };
  void programOnly(const ServiceRun& run);

  AutoWizardSetting setting_;
  FrmVRCAuto& form_;
  AutoWizard wizard_;
};

}  // namespace firmlane
