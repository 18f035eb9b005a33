#include "wizard/classic/page_engine.h"

#include "state/tell_failure.h"

#include <algorithm>
#include <iterator>

namespace firmlane {

namespace {
namespace page = classic_page;

constexpr const char* kFirstPageText =
    "Welcome to the Tolvex Firmlane!\r\r"
    "This Wizard will download the latest firmware and software from Tolvex "
    "and install your choices on your computer and Wireless Receiver";
}  // namespace

struct PageEngine::Page {
  std::int16_t number;
  void (*next)(PageEngine&);
};

const PageEngine::Page PageEngine::kPages[] = {
    {page::kStart, [](PageEngine& e) { e.showProducts(); }},
    {page::kProducts, [](PageEngine& e) { e.takeProduct(); }},
    {page::kTask, [](PageEngine& e) { e.chooseTask(); }},
    {page::kFirmwareFetched, [](PageEngine& e) { e.leaveFetched(page::kFirmwareContact); }},
    {page::kFirmwareContact, [](PageEngine& e) { e.leaveFirmwareContact(); }},
    {page::kFirmwareList, [](PageEngine& e) { e.downloadFirmware(); }},
    {page::kFirmwareDownloaded, [](PageEngine& e) { e.offerReleaseNotes(); }},
    {page::kReadyToFlash, [](PageEngine& e) { e.askPowerOff(); }},
    {page::kPowerOff, [](PageEngine& e) { e.flash(); }},
    {page::kFlashed, [](PageEngine& e) { e.leaveFlash(); }},
    {page::kSoftwareFetched, [](PageEngine& e) { e.leaveFetched(page::kSoftwareContact); }},
    {page::kSoftwareContact, [](PageEngine& e) { e.leaveSoftwareContact(); }},
    {page::kSoftwareList, [](PageEngine& e) { e.downloadSoftware(); }},
    {page::kSoftwareDownloaded, [](PageEngine& e) { e.install(); }},
    {page::kFetchFailed, [](PageEngine& e) { e.backToStart(); }},
};

PageEngine::PageEngine(FormHost& host, const Files& files, SerialPort& port, FactoryLine& line, WizardInCharge& wizard,
                       Activity& activity, RunState& state, Form1& form1, const ClassicForms& forms, ClassicOperations operations)
    : host_(host),
      files_(files),
      port_(port),
      line_(line),
      wizard_(wizard),
      activity_(activity),
      state_(state),
      form1_(form1),
      forms_(forms),
      operations_(std::move(operations)) {
  form1.Command3.OnClick = [this] { Command3_Click(); };
  form1.Command1.OnClick = [this] { Command1_Click(); };
  form1.imgGUI.OnClick = [this] { form1_.Option6.Value = true; };
  form1.imgLWX.OnClick = [this] { form1_.Option5.Value = true; };
  for (int i = 0; i < form1.Option2.count(); ++i) {
    form1.Option2(i).OnClick = [this] { form1_.Command3.Enable(); };
  }
}

void PageEngine::Command3_Click() {
  try {
    turnPage();
  } catch (const Failure& failure) {
    wizard_.tellOutcome(OutcomeKind::Failure, failure.description());
    tellFailure(host_, state_, "Error: ", failure);
  }
}

void PageEngine::turnPage() {
  if (askingForPort_.underWay()) {
    // A click further down the stack waits for the port window: nothing can go on before it.
    forms_.frmPort.Show();
    return;
  }
  if (flashing_.underWay() || operations_.fetching()) {
    return;  // a click further down the stack has not come to its end
  }
  form1_.Command5.Hide();
  form1_.lblOutcome.clear();
  if (state_.FactoryBuild && state_.FactoryFirstPass) {
    startFactoryUnit();
  }
  form1_.lblPage.Caption = std::to_string(state_.WizardPage);
  const auto* found = std::find_if(std::begin(kPages), std::end(kPages),
                                   [this](const Page& candidate) { return candidate.number == state_.WizardPage; });
  if (found != std::end(kPages)) {
    found->next(*this);
  }
}

void PageEngine::startFactoryUnit() {
  state_.FactoryFirstPass = false;
  form1_.Option2(1).Value = true;
  state_.ProductCode = "WS";
  form1_.Option1(2).Value = true;
  state_.WizardPage = page::kTask;
  state_.SerialOnly = false;
}

void PageEngine::Command1_Click() {
  form1_.lblOutcome.clear();
  if (askingForPort_.underWay()) {
    // The user leaves the page that asked for a port; that page must not go on below the next.
    askingForPort_.leave();
    forms_.frmPort.Unload();
  }
  backToStart();
  form1_.Command1.Hide();
}

void PageEngine::backToStart() {
  activity_.forgetUnit();
  clearPage();
  form1_.lblTop.Caption = kFirstPageText;
  form1_.lblTop.Show();
  form1_.Option1(0).Value = true;
  for (int i = 0; i <= 2; ++i) {
    form1_.Option1(i).Show();
  }
  state_.WizardPage = page::kTask;
}

void PageEngine::showProducts() {
  form1_.lblTop.Caption = "Please select the product you would like to upgrade:";
  form1_.VRCButton.Show();
  form1_.LWXButton.Show();
  form1_.VRColdButton.Show();
  form1_.Command3.Disable();
  form1_.lblFAQ.Hide();
  state_.WizardPage = page::kProducts;
}

void PageEngine::takeProduct() {
  if (form1_.Option2(0).Value) {
    state_.ProductCode = "VC";
    form1_.imgGUI.Picture = "VRCGui";
    form1_.imgLWX.Picture = "VRCBox";
  } else if (form1_.Option2(1).Value) {
    state_.ProductCode = "WS";
  }
  form1_.Option2(0).Hide();
  form1_.Option2(1).Hide();
  showFirstTaskPage();
}

void PageEngine::returnToFirstTaskPage() {
  clearPage();
  form1_.Timer1.stop();
  form1_.Command1.Hide();
  form1_.lblOutcome.clear();
  form1_.lblTop.Show();
  form1_.Command3.Enable();
  showFirstTaskPage();
}

void PageEngine::showFirstTaskPage() {
  if (!state_.OldVelarc) {
    form1_.frmFS.Show();
    form1_.imgGUI.Show();
    form1_.imgLWX.Show();
  }
  for (int i = 0; i <= 2; ++i) {
    form1_.Option1(i).Visible = state_.OldVelarc;
  }
  form1_.Option1(0).Value = true;
  form1_.lblTop.Caption = "What would you like to do?";
  state_.WizardPage = page::kTask;
}

}  // namespace firmlane
