#include "wizard/auto/velarc2.h"

#include "state/file_names.h"

namespace firmlane {

namespace {

enum Row { kDsp, kHub, kFrontA, kFrontB, kNone };

constexpr std::array<UpdateStep, 2> kSteps = {{
    {.target = "NewHubFlash", .name = "Hub", .row = kHub, .ProcessorNo = "1", .option = 0},
    {.target = "DSPFlash", .name = "DSP", .row = kDsp, .ProcessorNo = "2", .option = 1},
}};

constexpr std::array<ProcessorRow, kVersionRows> kRows = {{
    {.inSystem = &SystemRecord::DspVersion,
     .listLine = 0,
     .inUnit = {&RunState::VrcDspVer1, &RunState::VrcDspVer2, &RunState::VrcDspVer3},
     .selecting = Selecting::Always,
     .finalCheck = FinalCheck::Equal,
     .tellsSystem = true,
     .unreadWithOldDsp = true},
    {.inSystem = &SystemRecord::HubVersion,
     .listLine = 1,
     .inUnit = {&RunState::VrcHubVer1, &RunState::VrcHubVer2, &RunState::VrcHubVer3},
     .selecting = Selecting::OnNormalLink,
     .finalCheck = FinalCheck::NotOlder,
     .tellsSystem = true},
    // The fronts are listed, and programmed by the service buttons alone.
    {.inSystem = &SystemRecord::RfVersion,
     .listLine = 2,
     .inUnit = {&RunState::VrcFrontAVer1, &RunState::VrcFrontAVer2, &RunState::VrcFrontAVer3}},
    {.inSystem = &SystemRecord::RfVersion,
     .listLine = 2,
     .inUnit = {&RunState::VrcFrontBVer1, &RunState::VrcFrontBVer2, &RunState::VrcFrontBVer3},
     .secondSection = true},
    {.listLine = 3, .progressSteps = 0},
}};

constexpr WizardTexts kTexts = {
    .welcome =
        "There are 2 main steps in upgrading your Velarc2:\r\r"
        "   1. Downloading firmware from Tolvex to this computer\r"
        "   2. Updating your Velarc2 with the new firmware\r\r"
        "If anything goes wrong during updating, dont worry, it's OK!\r"
        "You can just start the wizard over again, your Velarc2 will not be damaged.\r",
    .welcomeAgain =
        "There are 2 main steps in upgrading your Velarc2\r\r"
        "   1. Downloading firmware from Tolvex to this computer\r"
        "   2. Programming your Velarc2 with the new firmware\r\r"
        "If anything goes wrong during programming, dont worry, it's OK!\r"
        "You can just start the wizard over again, your Velarc2 will not be damaged.\r",
    .updateOption =
        "Update Velarc2 with new firmware from this PC."
        "  (Your Velarc must be connected to this computer and your Velarc2 must be turned on.)",
    .updateOptionAgain =
        "Update Velarc2 with new firmware from this PC."
        "  (Your Velarc2 must be connected to this computer and your Velarc2 must be turned on)",
    .verCheck =
        "Now attempting to read the firmware versions in the connected Velarc2.\r\n\r\n"
        "Your Velarc2 should be turned on now.",
    .noAnswer =
        "Unable to connect to your Velarc2\r\n\r\n"
        "Please check your connections and COM port and make sure your Velarc2 is turned on.",
    .recoverHint =
        "\r\n\r\nIf you are still unable to connect, click the 'Recover' button.\r\n"
        "Use this option if you think that the firmware in your Velarc2 may be corrupt.",
    .versionInUnit = "The firmware version in your Velarc2 is:",
    .gotVersions =
        "Firmlane has received current version information from Tolvex.\r\n\r\n"
        "The available Velarc2 firmware versions are listed below. "
        "Please select a version to download and then click Next to continue the upgrade process.",
    .restart =
        "Firmlane has finished downloading firmware.\r\n\r\n"
        "The downloaded firmware has been saved to your hard drive.\r\n"
        "You can now upgrade your Velarc2(s) at any time in the future"
        " by restarting the Firmlane and selecting the 'Update Velarc2 with new firmware' option.\r\n\r\n"
        "                                      Or",
    .restartBottom =
        "If you would like to update the firmware in your Velarc2 now,\r\n"
        "click Next and select 'Update Velarc2 with new firmware'.",
    .current =
        "Your Velarc2's firmware is current.\r\n\r\n"
        "If you would still like to re-flash your Velarc2, please click OK\r\n",
    .sureToReflash = "Are you sure you want to reprogram your Velarc2? The firmware in it is current!",
    .turnOffAndOn = "Turn off your Velarc2 and turn it back on to continue",
    .waitingForReset = "Waiting for Velarc2 reset",
    .notReprogrammed =
        "One or more of the processors in your Velarc2 did not reprogram correctly.\r\n\r\n"
        "Please restart the Firmlane to try again",
    .complete =
        "Programming Complete.\r\n\r\n"
        "Congratulations, you have successfully programmed your Velarc2!\r\r",
    .completeOnOldLink = "",
    .versionsUnreadable = "Error reading Velarc2 firmware versions. Please try again",
};

constexpr ProductParameters kVelarc2 = {
    .ProductCode = "VC",
    .inVrcAutoWizard = true,
    .systems = &RunState::VrcSystems,
    .sysFile = &RunState::VrcSysFile,
    .sysFileName = file_name::kVelarc2Systems,
    .lastRowLookedUp = 20,
    .firmwareLines = 3,
    .releaseNotes = "/Velarc/Firmware/version.html",
    .rows = kRows,
    .steps = kSteps,
    .ignoresOldLink = true,
    .totalShownAfterQuestions = true,
    .opensDebugView = false,
    .texts = kTexts,
};

}  // namespace

const ProductParameters& velarc2Parameters() { return kVelarc2; }

WizardWindow velarc2Window(FrmVRCAuto& form) {
  return {.form = form,
          .rows = {{{form.Check1, form.DSPC, form.DSP1},
                    {form.Check2, form.HUBC, form.HUB1},
                    {form.Check3, form.Front1C, form.Front1},
                    {form.Check4, form.Front2C, form.Front2},
                    {form.Check5, form.LCDC, form.LCD1}}},
          .downloadSteps = {},
          .updateSteps = {},
          .verdictLight = nullptr,
          .details = nullptr};
}

Velarc2Wizard::Velarc2Wizard(const AutoWizardSetting& setting, AutoWizardTies ties, FrmVRCAuto& form)
    : setting_(setting), form_(form), wizard_(setting, std::move(ties), velarc2Window(form), velarc2Parameters()) {
  form.btnHUB.OnClick = [this] { programOnly({"1", 0, "HUB Programming Complete"}); };
  form.btnDSP.OnClick = [this] { programOnly({"2", 1, "DSP Programming Complete"}); };
  form.btnF1.OnClick = [this] { programOnly({"3", 2, "Front A Programming Complete"}); };
  form.btnF2.OnClick = [this] { programOnly({"4", 3, "Front B Programming Complete"}); };
}

void Velarc2Wizard::programOnly(const ServiceRun& run) {
  setting_.state.FlashTarget = "DSPFlash";
  wizard_.driver().choose(run.ProcessorNo, run.option);
  setting_.state.ComPort = 1;
  form_.Progress1.Value = 0;
  form_.Progress1.Show();
  form_.lblReset.Show();
  setting_.form1.Command3.Click();
  if (!setting_.state.TimedOut) {
    form_.lblReset.Caption = run.done;
    form_.lblReset.Show();
  }
}

}  // namespace firmlane
