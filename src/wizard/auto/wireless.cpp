#include "wizard/auto/wireless.h"

#include "state/file_names.h"

namespace firmlane {

namespace {

enum Row { kDsp, kHub, kRf1, kRf2, kLcd };

constexpr std::array<UpdateStep, 5> kSteps = {{
    {.target = "NewHubFlash", .name = "Hub", .row = kHub, .ProcessorNo = "1", .option = 0},
    {.target = "DSPFlash", .name = "DSP", .row = kDsp, .ProcessorNo = "2", .option = 1},
    {.target = "RF1Flash", .name = "RF1", .row = kRf1, .ProcessorNo = "3", .option = 2},
    {.target = "RF2Flash", .name = "RF2", .row = kRf2, .ProcessorNo = "4", .option = 3},
    {.target = "FrontFlash", .name = "Front", .row = kLcd, .ProcessorNo = "5", .option = 4, .toldToDebugView = true},
}};

constexpr std::array<ProcessorRow, kVersionRows> kRows = {{
    {.inSystem = &SystemRecord::DspVersion,
     .listLine = 0,
     .inUnit = {&RunState::VerDspMajor, &RunState::VerDspMinor},
     .selecting = Selecting::Always,
     .tellsSystem = true},
    {.inSystem = &SystemRecord::HubVersion,
     .listLine = 1,
     .inUnit = {&RunState::VerHubMajor, &RunState::VerHubMinor},
     .selecting = Selecting::OnNormalLink,
     .finalCheck = FinalCheck::NotOlder,
     .tellsSystem = true},
    {.inSystem = &SystemRecord::RfVersion,
     .listLine = 2,
     .inUnit = {&RunState::VerRf1Major, &RunState::VerRf1Minor},
     .selecting = Selecting::OnNormalLink,
     .finalCheck = FinalCheck::NotOlder,
     .tellsSystem = true},
    {.inSystem = &SystemRecord::RfVersion,  // one image serves both sections
     .listLine = 2,
     .inUnit = {&RunState::VerRf2Major, &RunState::VerRf2Minor},
     .selecting = Selecting::OnNormalLink,
     .finalCheck = FinalCheck::NotOlder,
     .secondSection = true},
    {.inSystem = &SystemRecord::FrontVersion,
     .listLine = 3,
     .inUnit = {&RunState::VerFrontMajor, &RunState::VerFrontMinor},
     .selecting = Selecting::OnNormalLink,
     .finalCheck = FinalCheck::NotOlder,
     .progressSteps = 1,
     .tellsSystem = true},
}};

constexpr WizardTexts kTexts = {
    .welcome =
        "There are 2 main steps in upgrading your LWX receiver:\r\r"
        "   1. Downloading firmware from Tolvex to this computer\r"
        "   2. Updating your receiver with the new firmware\r\r"
        "If anything goes wrong during updating, dont worry, it's OK!\r"
        "You can just start the wizard over again, your receiver will not be damaged.\r\r\n"
        "VERY IMPORTANT BEFORE CONTINUING:\r\n"
        "Dipswitch #7 MUST be down (off) on your LWX receiver\r\n"
        "                               AND\r\n"
        "Only 1 LWX receiver can be connected to your computer",
    .welcomeAgain =
        "There are 2 main steps in upgrading your LWX receiver:\r\r"
        "   1. Downloading firmware from Tolvex to this computer\r"
        "   2. Programming your receiver with the new firmware\r\r"
        "If anything goes wrong during programming, dont worry, it's OK!\r"
        "You can just start the wizard over again, your receiver will not be damaged.\r\r\n"
        "VERY IMPORTANT BEFORE CONTINUING:\r\n"
        "Dipswitch #7 MUST be down (off) on your LWX receiver\r\n"
        "                               AND\r\n"
        "Only 1 LWX receiver can be connected to your computer",
    .updateOption =
        "Update receiver with new firmware from this PC."
        "  (Your receiver must be connected to this computer and your receiver must be turned on.)",
    .updateOptionAgain =
        "Update receiver with new firmware from this PC."
        "  (Your receiver must be connected to this computer and your receiver must be turned on)",
    .verCheck =
        "Now attempting to read the firmware versions in the connected receiver.\r\n\r\n"
        "Your receiver should be turned on now.",
    .noAnswer =
        "Unable to connect to your receiver\r\n\r\n"
        "Please check your connections and COM port and make sure your receiver is turned on.",
    .recoverHint =
        "\r\n\r\nIf you are still unable to connect, click the 'Recover' button.\r\n"
        "Use this option if you think that the firmware in your receiver may be corrupt.",
    .versionInUnit = "The firmware version in your receiver is:",
    .gotVersions =
        "Firmlane has received current version information from Tolvex.\r\n\r\n"
        "The available LWX Receiver firmware versions are listed below. "
        "Please select a version to download and then click Next to continue the upgrade process.",
    .restart =
        "Firmlane has finished downloading firmware.\r\n\r\n"
        "The downloaded firmware has been saved to your hard drive.\r\n"
        "You can now upgrade your LWX receiver(s) at any time in the future"
        " by restarting the Firmlane and selecting the 'Update receiver with new firmware' option.\r\n\r\n"
        "                                      Or",
    .restartBottom =
        "If you would like to update the firmware in your receiver now,\r\n"
        "click Next and select 'Update Receiver with new firmware'.",
    .current =
        "Your receiver's firmware is current.\r\n\r\n"
        "If you would still like to re-flash your receiver, please click OK\r\n",
    .sureToReflash = "Are you sure you want to reprogram your receiver? The firmware in it is current!",
    .turnOffAndOn = "Turn off your receiver and turn it back on to continue",
    .waitingForReset = "Waiting for receiver reset",
    .notReprogrammed =
        "One or more of the processors in your receiver did not reprogram correctly.\r\n\r\n"
        "Please restart the Firmlane to try again",
    .complete =
        "Programming Complete.\r\n\r\n"
        "Congratulations, you have successfully programmed your LWX receiver!\r\r",
    .completeOnOldLink = "\r\n(Your receiver will display 'Tolvex Version 2.3' on power up)",
    .versionsUnreadable = "Error reading LWX firmware versions. Please try again",
};

constexpr ProductParameters kWireless = {
    .ProductCode = "WS",
    .inVrcAutoWizard = false,
    .systems = &RunState::LwxSystems,
    .sysFile = &RunState::LwxSysFile,
    .sysFileName = file_name::kWirelessSystems,
    .lastRowLookedUp = 50,
    .firmwareLines = 4,
    .releaseNotes = "/LWX/firmware/version-firmware.html",
    .rows = kRows,
    .steps = kSteps,
    .ignoresOldLink = false,
    .totalShownAfterQuestions = false,
    .opensDebugView = true,
    .texts = kTexts,
};

}  // namespace

const ProductParameters& wirelessParameters() { return kWireless; }

WizardWindow wirelessWindow(FrmAuto& form) {
  return {.form = form,
          .rows = {{{form.Check1, form.DSPC, form.DSP1},
                    {form.Check2, form.HUBC, form.HUB1},
                    {form.Check3, form.RFC, form.RF1},
                    {form.Check4, form.RF2C, form.RF2},
                    {form.Check5, form.LCDC, form.LCD1}}},
          .downloadSteps = {&form.lblStep1, &form.lblStep2, &form.lblStep5},
          .updateSteps = {&form.lblStep3, &form.lblStep4, &form.lblStep6, &form.lblStep7},
          .verdictLight = &form.step7,
          .details = &form.btnDetails};
}

WirelessWizard::WirelessWizard(const AutoWizardSetting& setting, AutoWizardTies ties, FrmAuto& form)
    : state_(setting.state), form_(form), wizard_(setting, std::move(ties), wirelessWindow(form), wirelessParameters()) {
  form.btnDetails.OnClick = [this] { btnDetails_Click(); };
}

void WirelessWizard::btnDetails_Click() {
  if (state_.OptionsShown) {
    state_.OptionsShown = false;
    HideOptions();
    form_.btnDetails.Caption = "Show Advanced Options";
  } else {
    state_.OptionsShown = true;
    ShowOptions();
    form_.btnDetails.Caption = "Hide Advanced Options";
  }
}

void WirelessWizard::HideOptions() { wizard_.table().HideUpdate(); }

void WirelessWizard::ShowOptions() { wizard_.table().ShowUpdate(); }

}  // namespace firmlane
