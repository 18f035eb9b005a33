// Page 0, the choice of task, and pages 5 to 7: towards a flash run, the run, and what follows it.
#include <array>

#include "state/tell_failure.h"
#include "wizard/classic/page_engine.h"

namespace firmlane {

namespace {

constexpr int kBarInterval = 100;
constexpr int kFrontOption = 4;

constexpr const char* kOldVelarcTarget = "OldVRCFlash";
constexpr const char* kTurnOff = "Turn off your receiver and turn it back on to continue";
constexpr const char* kReceiverText = "Please turn on the power switch on your Receiver now\r\rWaiting for a Receiver reset...";

/// FlashTarget by the selected processor.
struct Targets {
  const char* productCode;
  std::array<const char*, 5> byOption;
};
constexpr Targets kVelarcTargets{"VC", {"NewHubFlash", "DSPFlash", "Front1Flash", "Front2Flash", kOldVelarcTarget}};
constexpr Targets kWirelessTargets{"WS", {"NewHubFlash", "DSPFlash", "RF1Flash", "RF2Flash", "FrontFlash"}};

/// The words of page 5 for a product.
struct PowerOffText {
  const char* unit;
  const char* units;
  const char* chain;
};

std::string powerOffText(const PowerOffText& words) {
  const std::string unit = words.unit;
  return "Before a " + unit + "'s FLASH RAM can be upgraded, you must make sure that only one " + unit +
         " is connected to your computer and that there are no other " + words.units + " connected " + words.chain +
         "\r\rPlease turn off the power switch on your " + unit + " now and click Next";
}

}  // namespace

void PageEngine::chooseTask() {
  activity_.forgetUnit();
  form1_.imgGUI.Hide();
  form1_.imgLWX.Hide();
  form1_.frmFS.Hide();
  const bool wireless = state_.ProductCode == "WS";
  const bool newVelarc = state_.ProductCode == "VC" && !state_.OldVelarc;
  // On the production line the classic pages serve the unit: its serial number follows the flash run there.
  if ((wireless || newVelarc) && !state_.FactoryBuild) {
    if (form1_.Option5.Value) {
      openAutoWizard(wireless ? static_cast<AutoForm&>(forms_.frmAuto) : forms_.frmVRCAuto);
      if (!state_.AutoDriving) {
        return;
      }
    } else {
      form1_.Option1(1).Value = true;
    }
  }
  state_.WizardPage = classic_page::kFirmwareFetched;
  switch (form1_.Option1.selected()) {
    case 0:
      fetchList(classic_page::kFirmwareFetched, operations_.GetUpdateText);
      break;
    case 1:
      fetchList(classic_page::kSoftwareFetched, operations_.GetUpdateSOFT);
      break;
    case 2:
      prepareFlash();
      break;
    case 3:
      showVersions();
      break;
    default:
      break;
  }
}

void PageEngine::openAutoWizard(AutoForm& wizard) {
  form1_.Option1(3).Show();
  wizard.Show();
  form1_.Hide();
}

void PageEngine::fetchList(std::int16_t page, const std::function<void()>& fetch) {
  state_.WizardPage = page;
  for (int i = 0; i < form1_.Option1.count(); ++i) {
    form1_.Option1(i).Hide();
  }
  form1_.lblConnect.Show();
  form1_.Timer1.start(kBarInterval);
  setBar(0);
  form1_.ProgressBar1.Show();
  form1_.lblTop.Hide();
  form1_.List1.Clear();
  operations_.clearUrls();
  fetch();
}

void PageEngine::prepareFlash() {
  state_.WizardPage = classic_page::kReadyToFlash;
  for (int i = 0; i < form1_.Option1.count(); ++i) {
    form1_.Option1(i).Hide();
  }
  form1_.lblTop.Caption = readyText();
}

std::string PageEngine::readyText() const {
  const std::string unit = state_.ProductCode == "VC" ? "Vel-Arc" : "receiver";
  return "If you are ready to Update the firmware in your " + unit + " now, click on Next\r\r";
}

void PageEngine::showVersions() {
  if (portChosen()) {
    state_.VersionsComplete = false;
    state_.SerialRead = false;
    state_.GotId = false;
    state_.GetVersionsSent = false;
    state_.VersionsRead = false;
    forms_.frmVersion.ShowModal();
  }
  state_.WizardPage = classic_page::kTask;
}

bool PageEngine::portChosen() {
  if (state_.PortChosen) {
    return true;
  }
  forms_.frmPort.Show();
  const LeavableWait::Stay asking(askingForPort_);
  // The factory's procedures choose a port too, and would lead this click astray.
  if (state_.FactoryBuild) {
    line_.hideButtons();
  }
  // A user who closes the window has chosen nothing and stays on the page.
  while (!asking.left() && !state_.PortChosen && forms_.frmPort.Loaded) {
    host_.queue().WaitEvents();
  }
  if (state_.FactoryBuild) {
    line_.showButtons();
  }
  return state_.PortChosen && !asking.left();
}

void PageEngine::askPowerOff() {
  if (!portChosen()) {
    return;
  }
  if (state_.ProductCode == "VC") {
    form1_.lblTop.Caption = powerOffText({"Vel-Arc", "Vel-Arcs", "in the chain"});
  } else {
    form1_.lblTop.Caption = powerOffText({"Receiver", "Receivers", "on the network"});
    form1_.frmUC.Show();
  }
  state_.WizardPage = classic_page::kPowerOff;
  form1_.Command1.Hide();
}

void PageEngine::flash() {
  const LeavableWait::Stay flashing(flashing_);
  if (form1_.frmUC.Visible && form1_.Option4.selected() < 0) {
    host_.showMessage("Please select the processor to flash and then click Next to continue");
    return;
  }
  if (form1_.Option4(kFrontOption).Value) {
    loadFront();
  }
  setTarget();
  if (state_.DebugView) {
    forms_.frmDBUG.lblStage.Caption = "Waiting for Receiver response";
    forms_.frmDBUG.lblBytes.Caption = "0";
    forms_.frmDBUG.lblErrors.Caption = "Ready to start programming front";
  }
  setBar(0);
  form1_.ProgressBar1.Show();
  form1_.Timer1.stop();
  form1_.Command3.Disable();
  form1_.frmUC.Hide();
  // Whatever ends a run before it began leaves the processor to be done: for the wizards that is what TimedOut says.
  try {
    if (imageReady()) {
      operations_.ConnectVelarc();
    } else {
      state_.TimedOut = true;
      state_.WizardPage = classic_page::kReadyToFlash;
      form1_.lblTop.Caption = readyText();
      wizard_.tellOutcome(OutcomeKind::Failure, "There is no image to program: nothing was sent, and nothing was erased");
    }
  } catch (const Failure&) {
    state_.TimedOut = true;
    leaveRun();
    throw;
  }
  leaveRun();
}

void PageEngine::leaveRun() {
  form1_.ProgressBar1.Hide();
  form1_.lblProgressInfo.Hide();
  form1_.Command3.Enable();
}

void PageEngine::loadFront() {
  FrmAuto& frmAuto = forms_.frmAuto;
  frmAuto.lblReset.Caption = "Converting Flash file, please wait...";
  frmAuto.btnNext.Disable();
  host_.queue().PumpEvents();
  operations_.ConvertFront();
  frmAuto.lblReset.Caption = kTurnOff;
}

bool PageEngine::imageReady() {
  if (state_.FlashTarget == "Front1Flash" || state_.FlashTarget == "Front2Flash") {
    return operations_.loadVelarcFront();
  }
  try {
    operations_.requireImage();
  } catch (const Failure& failure) {
    tellFailure(host_, state_, "Error: ", failure);
    return false;
  }
  // A file that could not be read has been told. What was read before still serves; without any image a run would erase the
  // panel and have nothing to send.
  return state_.FlashTarget != "FrontFlash" || !state_.FrontImage.empty();
}

void PageEngine::setTarget() {
  const int option = form1_.Option4.selected();
  if (state_.ProductCode == kVelarcTargets.productCode && !state_.OldVelarc) {
    if (option >= 0) {
      state_.FlashTarget = kVelarcTargets.byOption.at(static_cast<std::size_t>(option));
    }
    return;
  }
  if (state_.ProductCode != kWirelessTargets.productCode) {
    state_.FlashTarget = kOldVelarcTarget;
  } else if (option >= 0) {
    state_.FlashTarget = kWirelessTargets.byOption.at(static_cast<std::size_t>(option));
  }
  form1_.lblTop.Caption = kReceiverText;
}

void PageEngine::leaveFlash() {
  const bool serialNumber = (state_.FlashTarget == "DSPFlash" && state_.FactoryBuild) || state_.SerialOnly;
  if (serialNumber && state_.SerialStep != serial_step::kFinished) {
    serialNumberClick();
    return;
  }
  line_.endProcedure();
  if (state_.FactoryBuild) {
    line_.readyForNext(line_.verdict());
  } else {
    backToStart();
  }
}

void PageEngine::serialNumberClick() {
  if (state_.SerialStep >= serial_step::kProgramming) {
    return;
  }
  ++state_.SerialStep;
  if (state_.SerialStep == serial_step::kPowerCycle) {
    form1_.ProgressBar1.Hide();
    port_.setSettings("57600,N,8,1");
    operations_.DoSerialNumber();
  }
}

void PageEngine::setBar(int value) {
  wizard_.setBar(value);
  if (state_.InHouseBuild) {
    forms_.frmInHouse.prg.Value = value;
  }
}

}  // namespace firmlane
