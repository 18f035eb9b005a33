// What an auto wizard needs of the program around it.
#pragma once

#include <functional>
#include <string>

#include "catalogue/firmware_set.h"
#include "platform/files.h"
#include "platform/screen.h"
#include "progress/activity.h"
#include "progress/wizard_in_charge.h"
#include "state/form1.h"
#include "state/frm_port.h"
#include "state/frm_version.h"
#include "state/run_state.h"
#include "state/small_forms.h"

namespace firmlane {

/// The forms and values that both wizards share, and where an outcome is told.
struct AutoWizardSetting {
  FormHost& host;
  const WizardInCharge& wizard;
  const Files& files;
  FirmwareSet& set;
  RunState& state;
  Form1& form1;
  FrmPort& frmPort;
  FrmVersion& frmVersion;
  FrmRecover& frmRecover;
  FrmDBUG& frmDBUG;
  Activity& activity;
};

/// Operations of other subsystems, tied by whoever builds the wizards.
struct AutoWizardTies {
  /// Downloads the file of the selected line of Form1.List1. Tells a failure itself; returns whether the file is complete.
  std::function<bool()> GetFirmware2;
  /// Opens a path of the maker's web site in the user's browser. Tells a failure itself.
  std::function<void(const std::string& path)> StartDoc;
  /// Gives up the fetch of the list that a press of Form1.Command3 has begun; nothing of it comes any more.
  std::function<void()> abandonList = [] {};
  /// Form1 asks again what to do, as when its product had just been chosen.
  std::function<void()> returnToFirstTaskPage = [] {};
};

}  // namespace firmlane
