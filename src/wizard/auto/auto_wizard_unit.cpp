// Pages up to the download: the unit is read, the list of systems fetched, a system picked.
#include "platform/scope.h"
#include "state/text.h"
#include "wizard/auto/auto_wizard.h"

namespace firmlane {

void AutoWizard::nextOnOptions() {
  form_.lblMain.Height = kMainHeight;
  form_.lblMain.Caption = "";
  form_.imgFlash.Hide();
  form_.imgDL.Hide();
  file_.ReadSysFile();
  if (form_.chkReceiver.checked() && !readUnit()) {
    return;
  }
  state_.AutoPage = 2;
  form_.btnNext.Enable();
  next();
}

/// Whether the wizard goes on at once, for a unit that cannot be read. Otherwise it waits: with the unit's version on the screen,
/// or on the options page, for want of a port.
bool AutoWizard::readUnit() {
  switch (reading_.readUnit()) {
    case UnitReading::Outcome::NoPort:
      backToOptions();
      return false;
    case UnitReading::Outcome::Recover:
      table_.selectAll();
      texts_.instruct(kClickNext);
      form_.btnNext.Enable();
      reading_.finish();
      return true;
    case UnitReading::Outcome::Read:
      break;
  }
  table_.ClearVersions();
  table_.LoadVersions();
  file_.ShowSysVer();
  form_.lblMain.Caption = versionText();
  reading_.finish();
  state_.AutoPage = 2;
  form_.btnNext.Enable();
  return false;
}

std::string AutoWizard::versionText() {
  std::string text = std::string(product_.texts.versionInUnit) + kCrLf;
  const SystemRecord* matched = file_.matched();
  if (state_.LegacyLink) {
    text += "Version " + dotted(state_.VerDspMajor, state_.VerDspMinor) + "0";
  } else if (matched == nullptr) {
    text += "Your version is NOT a released set";
  } else {
    text += "Version " + matched->SystemVersion.trimmed() + ", released " + matched->ReleaseDate.trimmed();
  }
  if (!form_.ChkOffline.checked()) {
    const SystemRecord& onDisk = file_.setOnDisk();
    text += "\r\n\r\nThe firmware version available on your hard drive is:\r\nVersion " +
            (state_.LegacyLink ? onDisk.DspVersion.trimmed() : onDisk.SystemVersion.trimmed()) + ", released " +
            onDisk.ReleaseDate.trimmed();
  }
  return text;
}

void AutoWizard::nextOnUnit() {
  form_.btnNext.Disable();
  if (form_.ChkOffline.checked()) {
    takeListOfSystems();
  } else {
    takeSetOnDisk();
  }
}

/// The online path. Both its waits, for the list and for the user's pick, have no limit of their own: Back and Exit end them.
void AutoWizard::takeListOfSystems() {
  waiting_ = true;
  if (fetching_) {
    return;  // the fetch that Back left behind is still on the stack below; it goes on for this press
  }
  state_.WizardPage = 0;
  state_.ProductCode = product_.ProductCode;
  state_.AutoDriving = true;
  if (!listKnown_) {
    state_.CatalogueReady = false;  // what has come so far was a list of something else
  }
  if (!pressNextOfForm1()) {
    return;
  }
  EventQueue& queue = setting_.host.queue();
  while (!state_.CatalogueReady) {
    queue.WaitEvents();
    if (!waiting_) {
      return;
    }
  }
  listKnown_ = true;
  setting_.form1.Option2(1).Value = true;
  if (!pressNextOfForm1()) {
    return;
  }
  queue.PumpEvents();
  if (!waiting_ || !pressNextOfForm1()) {
    return;
  }
  offerSystems();
  while (!systemPicked()) {
    queue.WaitEvents();
    if (!waiting_) {
      return;
    }
  }
  takeSystemPicked();
}

/// False when the user has meanwhile gone back; the screen is then as Back, and what came after it, left it.
bool AutoWizard::pressNextOfForm1() {
  {
    const Raised fetching(fetching_);
    setting_.form1.Command3.Click();
  }
  if (!waiting_) {
    restoreView();
  }
  return waiting_;
}

void AutoWizard::offerSystems() {
  texts_.LoadGotVersionsMsg();
  table_.LoadVersionList();
  if (systemPicked()) {
    form_.VersionList.ListIndex = state_.SelectedSystem;  // an earlier pick still holds; the user is to see which
  }
  form_.btnRelNote.Show();
}

/// A pick holds for later lists too, unless they are shorter.
bool AutoWizard::systemPicked() const { return state_.VersionPicked && state_.SelectedSystem < form_.VersionList.ListCount(); }

void AutoWizard::takeSystemPicked() {
  waiting_ = false;
  table_.ParseVersionsSys();
  table_.selectAll();
  form_.btnNext.Enable();
  file_.UpdateFileSysVer();
  file_.SaveSysFile();
  state_.AutoPage = 3;
}

void AutoWizard::takeSetOnDisk() {
  file_.ReadSysFile();
  (state_.*product_.systems)[0] = file_.setOnDisk();
  table_.ParseVersionsSys();
  state_.SelectedSystem = 0;
  form_.btnNext.Enable();
  state_.AutoPage = 4;
  next();
}

void AutoWizard::nextOnSystems() {
  form_.btnBack.Hide();
  form_.btnNext.Disable();
  texts_.LoadDownloadMSG();
  form_.VersionList.Hide();
  form_.Progress1.Show();
  if (!driver_.GetFirmware()) {
    // Told already. The page is as before, so that the user can try again, or another system.
    form_.Progress1.Hide();
    offerSystems();
    form_.btnBack.Show();
    form_.btnNext.Enable();
    return;
  }
  form_.btnNext.Enable();
  texts_.LoadDLDoneMSG();
  table_.ParseVersionsSys();  // the user may have clicked another line after the first
  file_.UpdateFileSysVer();
  file_.SaveSysFile();
  state_.AutoPage = 4;
  form_.prgTotal.Value = 1;
}

}  // namespace firmlane
