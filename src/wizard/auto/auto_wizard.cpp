#include "wizard/auto/auto_wizard.h"

#include "state/pages.h"
#include "state/text.h"

namespace firmlane {

namespace {
constexpr int kMainHeightShort = 1215;  // leaves room for the options
namespace page = auto_page;
constexpr const char* kFaq = "/Mic_FAQ_LWX_index.htm";
}  // namespace

/// A page and what Next and Back do on it; null for nothing.
struct AutoWizard::Page {
  std::int16_t number;
  void (AutoWizard::*next)();
  void (AutoWizard::*back)();
};

const AutoWizard::Page AutoWizard::kPages[] = {
    {page::kWelcome, &AutoWizard::nextOnWelcome, &AutoWizard::backToMainForm},
    {page::kOptions, &AutoWizard::nextOnOptions, &AutoWizard::backToWelcome},
    {page::kUnit, &AutoWizard::nextOnUnit, &AutoWizard::backToOptions},
    {page::kSystems, &AutoWizard::nextOnSystems, &AutoWizard::backToOptions},
    {page::kReady, &AutoWizard::nextOnDownloaded, &AutoWizard::backToOptions},
    {page::kProcessorDone, &AutoWizard::nextOnProcessorDone, nullptr},
    {page::kAllDone, &AutoWizard::nextOnAllDone, nullptr},
    {page::kDownloadOnly, &AutoWizard::nextOnDownloadOnly, nullptr},
    {page::kRestart, &AutoWizard::nextOnRestart, nullptr},
};

AutoWizard::AutoWizard(const AutoWizardSetting& setting, AutoWizardTies ties, const WizardWindow& window,
                       const ProductParameters& product)
    : setting_(setting),
      ties_(std::move(ties)),
      window_(window),
      product_(product),
      state_(setting.state),
      form_(window.form),
      progress_(state_, window_, product),
      texts_(setting.files, form_, progress_, product),
      file_(setting_, window_, product),
      table_(setting_, window_, progress_, product),
      driver_(setting_, ties_, window_, texts_, product),
      reading_(setting_, form_, texts_, product),
      reports_(setting_, window_, product) {
  tieEvents();
}

void AutoWizard::tieEvents() {
  form_.OnLoad = [this] { Form_Load(); };
  form_.OnUnload = [] { throw ProgramEnded(); };
  form_.cmdQuit.OnClick = [this] { form_.Unload(); };
  form_.btnNext.OnClick = [this] { btnNext_Click(); };
  form_.btnBack.OnClick = [this] { btnBack_Click(); };
  form_.btnMore.OnClick = [this] { btnMore_Click(); };
  form_.btnRelNote.OnClick = [this] { btnRelNote_Click(); };
  form_.VersionList.OnClick = [this] { VersionList_Click(); };
  form_.ChkOffline.OnClick = [this] { options_Click(); };
  form_.chkReceiver.OnClick = [this] { options_Click(); };
  form_.Watch.OnTimer = [this] { reading_.Watch_Timer(); };
  for (CheckBox* check : form_.checks()) {
    check->OnClick = [check] { check->Caption = check->checked() ? "YES" : "NO"; };
  }
}

void AutoWizard::Form_Load() {
  const Form1& form1 = setting_.form1;
  form_.Left = form1.Left.get();
  form_.Top = form1.Top.get();
  form_.Caption = "Tolvex Firmlane Version " + dotted(kVersionMajor, kVersionMinor);
  setting_.form1.Hide();
  takeCharge();
  // What the sister wizard has compared and found says nothing of a unit of this one.
  forgetUnit();
  state_.FinalCheckFailed = false;
  state_.AutoPage = page::kWelcome;
  form_.lblMain.Caption = product_.texts.welcome;
  form_.centre();
  if (product_.opensDebugView && state_.DebugView) {
    setting_.frmDBUG.Show();
    form_.Left = setting_.frmDBUG.Left + setting_.frmDBUG.Width;
  }
  form_.ChkOffline.Caption = kDownloadOption;
  form_.chkReceiver.Caption = product_.texts.updateOption;
  form_.ChkOffline.Hide();
  form_.chkReceiver.Hide();
}

void AutoWizard::options_Click() {
  for (Label* step : window_.downloadSteps) {
    step->Enabled = form_.ChkOffline.checked();
  }
  for (Label* step : window_.updateSteps) {
    step->Enabled = form_.chkReceiver.checked();
  }
  form_.btnNext.Enabled = form_.ChkOffline.checked() || form_.chkReceiver.checked();
}

void AutoWizard::btnNext_Click() {
  clearOutcome();
  next();
}

void AutoWizard::next() {
  form_.lblPage.Caption = std::to_string(state_.AutoPage);
  form_.ChkOffline.Hide();
  form_.chkReceiver.Hide();
  takeCharge();
  form_.btnRelNote.Hide();
  if (listWait_.underWay()) {
    tryAgain_ = true;  // the handler that waits further down the stack sees to it
    return;
  }
  for (const Page& page : kPages) {
    if (page.number == state_.AutoPage) {
      (this->*page.next)();
      return;
    }
  }
}

/// Also with each Next: the user can have been at the sister wizard, whose window stays loaded behind Back.
void AutoWizard::takeCharge() {
  state_.InAutoWizard = true;
  state_.InVrcAutoWizard = product_.inVrcAutoWizard;
  state_.ProductCode = product_.ProductCode;
}

/// Whatever unit comes next is compared and counted anew.
void AutoWizard::forgetUnit() {
  setting_.activity.forgetUnit();
  state_.VersionsCompared = false;
  state_.ProgressSized = false;
  progress_.clear();
  driver_.forgetUnfinished();
}

void AutoWizard::nextOnWelcome() {
  form_.lblMain.Height = kMainHeightShort;
  state_.AutoPage = page::kOptions;
  form_.lblMain.Caption = kOptionsText;
  form_.ChkOffline.Show();
  form_.chkReceiver.Show();
  form_.btnNext.Enabled = form_.ChkOffline.checked() || form_.chkReceiver.checked();
  form_.imgFlash.Show();
  form_.imgDL.Show();
}

void AutoWizard::btnBack_Click() {
  form_.btnRelNote.Hide();
  clearOutcome();
  if (listWait_.underWay()) {
    // Also when a failed fetch has moved the page meanwhile: the wait is what the user leaves.
    listWait_.leave();
    ties_.abandonList();
    backToOptions();
    return;
  }
  for (const Page& page : kPages) {
    if (page.number == state_.AutoPage && page.back != nullptr) {
      (this->*page.back)();
      return;
    }
  }
}

void AutoWizard::backToMainForm() {
  Form1& form1 = setting_.form1;
  forgetUnit();
  ties_.returnToFirstTaskPage();
  state_.WizardPage = classic_page::kTask;
  form1.Option1(3).Hide();
  state_.AutoDriving = false;
  form1.Show();
  form1.frmFS.Show();
  form_.Hide();
  form1.List1.Hide();
  form1.imgGUI.Show();
  form1.imgLWX.Show();
}

void AutoWizard::backToWelcome() {
  state_.AutoPage = page::kWelcome;
  form_.lblMain.Caption = product_.texts.welcomeAgain;
  form_.centre();
  form_.ChkOffline.Caption = kDownloadOptionAgain;
  form_.chkReceiver.Caption = product_.texts.updateOptionAgain;
  form_.ChkOffline.Hide();
  form_.chkReceiver.Hide();
  form_.lblMain.Height = kMainHeight;
  form_.imgDL.Hide();
  form_.imgFlash.Hide();
  form_.btnNext.Enable();
}

void AutoWizard::backToOptions() {
  if (state_.AutoPage == page::kReady) {
    forgetUnit();  // the user left a unit that is current alone
  }
  state_.AutoPage = page::kOptions;
  showOptions();
  form_.VersionList.Hide();
}

void AutoWizard::showOptions() {
  setting_.activity.forgetUnit();
  form_.ChkOffline.Show();
  form_.ChkOffline.Enable();
  form_.chkReceiver.Show();
  form_.chkReceiver.Enable();
  form_.lblMain.Caption = kOptionsText;
  form_.imgDL.Show();
  form_.imgFlash.Show();
  form_.Progress1.Hide();
  form_.btnNext.Enable();
}

/// With each press of the user: what was told is read. Form1 is out of sight, and must not show it when it comes back.
void AutoWizard::clearOutcome() {
  form_.lblOutcome.clear();
  setting_.form1.lblOutcome.clear();
}

void AutoWizard::btnMore_Click() {
  state_.AutoPage = page::kOptions;
  form_.btnMore.Hide();
  state_.VersionsComplete = false;
  form_.btnNext.Show();
  forgetUnit();
  reading_.finish();
  btnNext_Click();
}

void AutoWizard::VersionList_Click() {
  if (form_.VersionList.ListIndex < 0) {
    return;
  }
  state_.SelectedSystem = static_cast<std::int16_t>(form_.VersionList.ListIndex);
  state_.VersionPicked = true;
}

void AutoWizard::LaunchRelNote() { ties_.StartDoc(product_.releaseNotes); }

void AutoWizard::LaunchFAQ() { ties_.StartDoc(kFaq); }

}  // namespace firmlane
