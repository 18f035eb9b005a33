// Pages 1 to 4 and 20 to 23: from the fetched list to a downloaded file.
#include "wizard/classic/page_engine.h"

#include "state/tell_failure.h"

namespace firmlane {

namespace {

constexpr int kFirmwareList = 3;
constexpr int kSoftwareList = 22;

template <typename Action>
void withContactForm(Form1& form1, Action action) {
  for (Control* control : std::initializer_list<Control*>{&form1.lblFirst, &form1.txtFirst, &form1.lblLast, &form1.txtLast,
                                                          &form1.lblEmail, &form1.txtEmail}) {
    action(*control);
  }
}

}  // namespace

void PageEngine::leaveFetched(int contactPage) {
  if (!state_.CatalogueReady) {
    host_.showFailure("Error, didnt download any files");
    state_.WizardPage = 0;
    return;
  }
  form1_.lblConnect.Hide();
  form1_.lblStatus.Hide();
  form1_.ProgressBar1.Hide();
  withContactForm(form1_, [](Control& control) { control.Show(); });
  form1_.lblTop.Caption =
      "If you would like to be notified of future firmware or remote software updates, please enter your contact information "
      "below.";
  form1_.lblTop.Show();
  state_.WizardPage = static_cast<std::int16_t>(contactPage);
}

void PageEngine::leaveFirmwareContact() {
  leaveContact();
  form1_.lblTop.Caption = "Please select the firmware version you wish to download from Tolvex and then click Next to continue";
  if (state_.ProductCode == "VC" && state_.CatalogueReady) {
    form1_.btnVRCrelnotef.Show();
  }
  state_.WizardPage = kFirmwareList;
}

void PageEngine::leaveSoftwareContact() {
  leaveContact();
  form1_.lblTop.Caption = "Please select the software version you wish to download from Tolvex and then click Next to continue";
  state_.WizardPage = kSoftwareList;
}

void PageEngine::leaveContact() {
  state_.ContactBlank =
      form1_.txtFirst.Text.get().empty() && form1_.txtLast.Text.get().empty() && form1_.txtEmail.Text.get().empty();
  withContactForm(form1_, [](Control& control) { control.Hide(); });
  registerContact();
  form1_.List1.Show();
}

void PageEngine::registerContact() {
  // An auto wizard walks through this page in code, with the window hidden: its user has filled in nothing.
  if (!form1_.Visible) {
    return;
  }
  form1_.Command3.Disable();
  try {
    operations_.RegisterUserData();
  } catch (const Failure& failure) {
    // Who gave no contact data is not bothered with what became of them.
    if (!state_.ContactBlank) {
      tellFailure(host_, state_, "Error: ", failure);
    }
  }
  form1_.Command3.Enable();
}

bool PageEngine::lineSelected(const std::string& request) {
  if (form1_.List1.ListIndex >= 0) {
    return true;
  }
  host_.showMessage(request);
  return false;
}

bool PageEngine::releaseNotesWanted(const std::string& what) {
  return host_.showMessageBox({.text = "Would you like to see the Release Notes for this " + what + " now?",
                               .buttons = MessageButtons::YesNo}) == MessageButton::Yes;
}

void PageEngine::startBar() {
  form1_.ProgressBar1.Show();
  form1_.Timer1.setEnabled(true);
}

void PageEngine::downloadFirmware() {
  if (!lineSelected("Please click on one of the firmware versions in the list and then click Next to continue")) {
    return;
  }
  form1_.btnVRCrelnotef.Hide();
  startBar();
  form1_.lblTop.Caption = "Downloading file to " + files_.programDirectory();
  form1_.Command3.Disable();
  operations_.GetFirmware2();
  form1_.Command3.Enable();
  state_.WizardPage = 4;
}

void PageEngine::offerReleaseNotes() {
  form1_.lblProgressInfo.Hide();
  form1_.ProgressBar1.Hide();
  form1_.List1.Hide();
  if (releaseNotesWanted("firmware")) {
    operations_.LaunchRelNote();
  }
  const std::string unit = state_.ProductCode == "VC" ? "Vel-Arc" : "receiver";
  form1_.lblTop.Caption = "If you are ready to update the firmware in your " + unit +
                          " now, click on Next\r\rOtherwise, click on Exit or More Options";
  state_.WizardPage = 5;
  form1_.Command1.Show();
}

void PageEngine::downloadSoftware() {
  if (!lineSelected("Please click on one of the software versions in the list and then click Next to continue")) {
    return;
  }
  form1_.lblProgressInfo.Hide();
  form1_.ProgressBar1.Hide();
  form1_.List1.Hide();
  if (releaseNotesWanted("software")) {
    operations_.LaunchRelNote();
  }
  startBar();
  form1_.lblTop.Caption = "Downloading file from Tolvex...";
  form1_.Command3.Disable();
  operations_.GetSoftware();
  form1_.Command3.Enable();
  state_.WizardPage = 23;
}

void PageEngine::install() {
  if (!operations_.downloadDone()) {
    host_.showFailure("Error retreiving Remote Software, please try again");
    backToStart();
    return;
  }
  operations_.InstallSoftware();
}

}  // namespace firmlane
