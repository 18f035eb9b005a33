// Pages up to the download: the unit is read, the list of systems fetched, a system picked.
#include "state/pages.h"
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
  state_.AutoPage = auto_page::kUnit;
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
  if (!form_.ChkOffline.checked() && !file_.imagesThere()) {
    tellNoSet();
  }
  reading_.finish();
  state_.AutoPage = auto_page::kUnit;
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

/// The online path. Its waits, for the list and for the user's pick, have no limit of their own: Back and Exit end them. Where
/// the list did not come Next tries again.
void AutoWizard::takeListOfSystems() {
  const LeavableWait::Stay stay(listWait_);
  const std::string page = form_.lblMain.Caption;
  do {
    tryAgain_ = false;
    form_.lblMain.Caption = page;
    form_.VersionList.Hide();
    form_.btnNext.Disable();
    state_.AutoPage = auto_page::kUnit;
    fetchList(stay);
    if (!await(stay, [this] { return state_.CatalogueReady; })) {
      continue;
    }
    walkForm1ToItsList(stay);
    if (stay.left()) {
      return;
    }
    offerSystems();
    if (await(stay, [this] { return systemPicked(); })) {
      takeSystemPicked();
    }
  } while (tryAgain_ && !stay.left());
}

/// Whether it has come, before the user left or wanted another try.
bool AutoWizard::await(const LeavableWait::Stay& stay, const std::function<bool()>& done) {
  while (!stay.left() && !tryAgain_ && !done()) {
    setting_.host.queue().WaitEvents();
  }
  return !stay.left() && !tryAgain_;
}

void AutoWizard::fetchList(const LeavableWait::Stay& stay) {
  state_.WizardPage = classic_page::kTask;
  state_.ProductCode = product_.ProductCode;
  state_.AutoDriving = true;
  if (!listKnown_) {
    state_.CatalogueReady = false;  // what has come so far was a list of something else
  }
  setting_.form1.Command3.Click();
  // A fetch that has failed in a box leaves a page on which nothing leads on; so does any that failed once Back is gone for good.
  const bool toldInABox = state_.WizardPage == classic_page::kFirmwareFetched;
  if (!stay.left() && !state_.CatalogueReady && (toldInABox || !form_.btnBack.Visible)) {
    form_.btnNext.Enable();
  }
}

/// Through the pages between the fetch and the list, which have nothing for this wizard.
void AutoWizard::walkForm1ToItsList(const LeavableWait::Stay& stay) {
  listKnown_ = true;
  setting_.form1.Option2(1).Value = true;
  if (state_.WizardPage != classic_page::kFirmwareFetched || setting_.form1.List1.ListCount() == 0) {
    return;  // an earlier list stands in for one that did not come
  }
  setting_.form1.Command3.Click();
  setting_.host.queue().PumpEvents();
  if (!stay.left()) {
    setting_.form1.Command3.Click();
  }
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
  table_.ParseVersionsSys();
  table_.selectAll();
  form_.btnNext.Enable();
  file_.UpdateFileSysVer();
  file_.SaveSysFile();
  state_.AutoPage = auto_page::kSystems;
}

void AutoWizard::takeSetOnDisk() {
  file_.ReadSysFile();
  if (!file_.imagesThere()) {
    backToOptions();
    tellNoSet();
    return;
  }
  (state_.*product_.systems)[0] = file_.setOnDisk();
  table_.ParseVersionsSys();
  state_.SelectedSystem = 0;
  form_.btnNext.Enable();
  state_.AutoPage = auto_page::kReady;
  next();
}

/// Nothing can be compared with a set that is not there, nor programmed from it.
void AutoWizard::tellNoSet() {
  setting_.wizard.tellOutcome(
      OutcomeKind::Caution,
      "There is no firmware set on your hard drive.\r\rPlease download the latest firmware from Tolvex to "
      "this PC first.");
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
  state_.AutoPage = auto_page::kReady;
  form_.prgTotal.Value = 1;
}

}  // namespace firmlane
