// Pages 1 to 4 and 20 to 23: from the fetched list to a downloaded file.
#include "wizard/classic/page_engine.h"

#include "state/tell_failure.h"

namespace firmlane {

namespace {

void showContactForm(Form1& form1, bool visible) {
  for (Control* control : std::initializer_list<Control*>{&form1.lblFirst, &form1.txtFirst, &form1.lblLast, &form1.txtLast,
                                                          &form1.lblEmail, &form1.txtEmail}) {
    control->Visible = visible;
  }
}

}  // namespace

void PageEngine::leaveFetched(std::int16_t contactPage) {
  // An earlier list may have come; but one without lines leaves nothing to choose, and no way on.
  if (!state_.CatalogueReady || form1_.List1.ListCount() == 0) {
    host_.showFailure("Error, didnt download any files");
    backToStart();
    return;
  }
  form1_.lblConnect.Hide();
  form1_.lblStatus.Hide();
  form1_.ProgressBar1.Hide();
  showContactForm(form1_, true);
  form1_.lblTop.Caption =
      "If you would like to be notified of future firmware or remote software updates, please enter your contact information "
      "below.";
  form1_.lblTop.Show();
  state_.WizardPage = contactPage;
}

/// Whatever a list, a download or a run has left on the page.
void PageEngine::clearPage() {
  showContactForm(form1_, false);
  for (Control* control :
       std::initializer_list<Control*>{&form1_.lblConnect, &form1_.lblStatus, &form1_.ProgressBar1, &form1_.lblProgressInfo,
                                       &form1_.List1, &form1_.btnVRCrelnotef, &form1_.frmUC}) {
    control->Hide();
  }
}

void PageEngine::leaveFirmwareContact() {
  hideContact();
  showFirmwareList();
  state_.WizardPage = classic_page::kFirmwareList;
  registerContact();
}

void PageEngine::showFirmwareList() {
  form1_.List1.Show();
  form1_.lblTop.Caption = "Please select the firmware version you wish to download from Tolvex and then click Next to continue";
  if (state_.ProductCode == "VC" && state_.CatalogueReady) {
    form1_.btnVRCrelnotef.Show();
  }
}

void PageEngine::leaveSoftwareContact() {
  hideContact();
  form1_.List1.Show();
  form1_.lblTop.Caption = "Please select the software version you wish to download from Tolvex and then click Next to continue";
  state_.WizardPage = classic_page::kSoftwareList;
  registerContact();
}

void PageEngine::hideContact() {
  state_.ContactBlank =
      form1_.txtFirst.Text.get().empty() && form1_.txtLast.Text.get().empty() && form1_.txtEmail.Text.get().empty();
  showContactForm(form1_, false);
}

/// The page that comes next stands already: a server that takes its time keeps nobody before an empty one.
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
  if (!operations_.downloadDone()) {
    // Told already. The list stands there again, so that the user can try once more, or another version.
    form1_.ProgressBar1.Hide();
    form1_.lblProgressInfo.Hide();
    showFirmwareList();
    return;
  }
  state_.WizardPage = classic_page::kFirmwareDownloaded;
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
  state_.WizardPage = classic_page::kReadyToFlash;
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
  state_.WizardPage = classic_page::kSoftwareDownloaded;
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
