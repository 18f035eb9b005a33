// The one record of state that all forms and operations share. It lives as long as the program and is never written to disk.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "state/system_record.h"

namespace firmlane {

/// The build switches: three kinds of build, all off in the delivered one.
struct BuildSwitches {
  bool factoryBuild = false;
  bool inHouseBuild = false;
  bool debugView = false;
};

/// Values of RunState::FlashPhase.
namespace flash_phase {
inline constexpr std::int16_t kIdle = 0;
inline constexpr std::int16_t kErasing = 1;
inline constexpr std::int16_t kErased = 2;
inline constexpr std::int16_t kFinished = 3;
}  // namespace flash_phase

/// Values of RunState::SerialStep.
namespace serial_step {
inline constexpr std::int16_t kIdle = 0;
inline constexpr std::int16_t kPowerCycle = 1;
inline constexpr std::int16_t kNumberShown = 2;
inline constexpr std::int16_t kModelShown = 3;
inline constexpr std::int16_t kProgramming = 4;
inline constexpr std::int16_t kFinished = 5;
}  // namespace serial_step

struct RunState {
  /// Serial port number chosen, 1 to 16.
  std::int16_t ComPort = 0;
  /// A port has been chosen.
  bool PortChosen = false;
  /// Product line: "WS" for the wireless line, "VC" for the Velarc line; empty until chosen.
  std::string ProductCode;
  /// Build switch: production line mode.
  bool FactoryBuild = false;
  /// With FactoryBuild: the next Next press is the first of a unit and goes to the serial number path.
  bool FactoryFirstPass = true;
  /// Serial number of the connected unit, with its model digit in front.
  std::int32_t SerialNumber = 0;
  /// Step of the serial number procedure; while it programs, the receive handler passes one answer through unchecked.
  std::int16_t SerialStep = serial_step::kIdle;
  /// Version readout: the ID answer was taken; in the serial number procedure: the read-back has come.
  bool GotId = false;
  /// All three fields of the contact form were empty.
  bool ContactBlank = false;
  /// The byte "A" arrived while the microphone run waits.
  bool MicAck = false;
  /// Number last read from sn.wls.
  std::int32_t FileSerial = 0;
  /// Processor being programmed: "DSPFlash", "NewHubFlash", "RF1Flash", "RF2Flash", "FrontFlash", "Front1Flash", "Front2Flash"
  /// or "OldVRCFlash".
  std::string FlashTarget;
  /// Bytes not yet delivered on the version form's port.
  std::string IdRxBuf;
  /// Version readout: the serial number of the ID answer has been stored.
  bool SerialRead = false;
  /// Version readout: the version request phase has begun.
  bool GetVersionsSent = false;
  /// Version readout: an acceptable version answer has come; its timer stops.
  bool VersionsRead = false;
  /// Ring of answers of the version form; all but the last are in use.
  std::array<std::string, 31> IdQueue;
  /// Next slot of IdQueue to fill.
  std::int16_t IdQueueWrite = 0;
  /// Next slot of IdQueue to read.
  std::int16_t IdQueueRead = 0;
  /// All versions of the unit are in; what the wizards wait for.
  bool VersionsComplete = false;
  /// Wireless: Hub version, number before the point.
  std::int16_t VerHubMajor = 0;
  /// Wireless: Hub version, number behind the point.
  std::int16_t VerHubMinor = 0;
  /// Wireless: DSP version, number before the point.
  std::int16_t VerDspMajor = 0;
  /// Wireless: DSP version, number behind the point.
  std::int16_t VerDspMinor = 0;
  /// Wireless: RF1 version, number before the point.
  std::int16_t VerRf1Major = 0;
  /// Wireless: RF1 version, number behind the point.
  std::int16_t VerRf1Minor = 0;
  /// Wireless: RF2 version, number before the point.
  std::int16_t VerRf2Major = 0;
  /// Wireless: RF2 version, number behind the point.
  std::int16_t VerRf2Minor = 0;
  /// Front version, number before the point.
  std::int16_t VerFrontMajor = 0;
  /// Front version, number behind the point.
  std::int16_t VerFrontMinor = 0;
  /// Velarc: Hub version, first number.
  std::int16_t VrcHubVer1 = 0;
  /// Velarc: Hub version, second number.
  std::int16_t VrcHubVer2 = 0;
  /// Velarc: Hub version, third number.
  std::int16_t VrcHubVer3 = 0;
  /// Velarc: DSP version, first number.
  std::int16_t VrcDspVer1 = 0;
  /// Velarc: DSP version, second number.
  std::int16_t VrcDspVer2 = 0;
  /// Velarc: DSP version, third number.
  std::int16_t VrcDspVer3 = 0;
  /// Velarc: Front A version, first number.
  std::int16_t VrcFrontAVer1 = 0;
  /// Velarc: Front A version, second number.
  std::int16_t VrcFrontAVer2 = 0;
  /// Velarc: Front A version, third number.
  std::int16_t VrcFrontAVer3 = 0;
  /// Velarc: Front B version, first number.
  std::int16_t VrcFrontBVer1 = 0;
  /// Velarc: Front B version, second number.
  std::int16_t VrcFrontBVer2 = 0;
  /// Velarc: Front B version, third number.
  std::int16_t VrcFrontBVer3 = 0;
  /// Run started by btnSN: only the serial number is programmed.
  bool SerialOnly = false;
  /// The one answer of SerialStep 4 was passed on.
  bool SerialAnswerTaken = false;
  /// Number of code bytes of the loaded front panel image (digit text length / 4), sent as the two program length bytes.
  std::int16_t FrontCodeBytes = 0;
  /// Front panel image as digit text, four digits per code byte.
  std::string FrontImage;
  /// The unit asked for the next front panel batch (sub-code 86).
  bool FrontBlockOk = false;
  /// Delaytimer ticks still to run.
  std::int16_t DelayTicks = 0;
  /// DelayTicks has run out.
  bool DelayDone = false;
  /// The front panel stream has begun.
  bool FrontStreaming = false;
  /// The unit asked for the vector table of the front panel image (sub-code 87).
  bool FrontVectorAsked = false;
  /// Page number of the auto wizards.
  std::int16_t AutoPage = 0;
  /// Page number of the classic wizard.
  std::int16_t WizardPage = -2;
  /// Last parsed list gave at least one entry.
  bool CatalogueReady = false;
  /// FrmAuto owns the screen; progress goes to its controls.
  bool InAutoWizard = false;
  /// FrmVRCAuto owns the screen; progress goes to its controls.
  bool InVrcAutoWizard = false;
  /// Flash run phase: idle, waiting for the erase report, erased, finished.
  std::int16_t FlashPhase = flash_phase::kIdle;
  /// Wireless: the unit has a second RF section; Velarc: it has a Front B.
  bool HasRf2 = false;
  /// Model number from the ID answer.
  std::int16_t UnitModel = 0;
  /// A Velarc's want-to-program was answered; from then on the receive handler lets events run.
  bool WantAcked = false;
  /// FrmAuto: the advanced options are shown.
  bool OptionsShown = false;
  /// An auto wizard drives Command3_Click; False only after Back on the welcome page.
  bool AutoDriving = false;
  /// The user pressed Recover on frmRecover; cleared at each read of the receiver.
  bool RecoverChosen = false;
  /// Final version check found a processor behind the chosen set.
  bool FinalCheckFailed = false;
  /// Wireless SYSTEM lines of the update list.
  std::array<SystemRecord, 11> LwxSystems;
  /// Wireless system version file in memory, row 0 = set on disk.
  std::array<SystemRecord, 201> LwxSysFile;
  /// Velarc SYSTEM lines of the update list.
  std::array<SystemRecord, 11> VrcSystems;
  /// Velarc system version file in memory, row 0 = set on disk.
  std::array<SystemRecord, 201> VrcSysFile;
  /// Index of the last SYSTEM record parsed (count minus 1).
  std::int16_t SystemCount = 0;
  /// The user clicked a line of VersionList; never cleared.
  bool VersionPicked = false;
  /// Index of the system record whose files are downloaded.
  std::int16_t SelectedSystem = 0;
  /// Watch fired: the 30 s for reading the unit ran out.
  bool ReadTimedOut = false;
  /// Row of the system file that matches the unit, 99 none.
  std::int16_t MatchedSystem = 0;
  /// CompareVersions has run for this receiver; cleared by btnMore_Click.
  bool VersionsCompared = false;
  /// Watchdog tick count reached its limit.
  bool TimedOut = false;
  /// The unit answers only on the older link: wireless unit reached at 9600, Velarc with a DSP below 5.00, or the older Velarc
  /// chosen.
  bool LegacyLink = false;
  /// The image is fully sent: Timer1 shows 100.
  bool ImageDone = false;
  /// CalcProgress has sized prgTotal for this pass.
  bool ProgressSized = false;
  /// Build switch: factory panel at start.
  bool InHouseBuild = false;
  /// Second generation Velarc: its start-up report came with sub-code 6 or 37.
  bool UnitIsVrc2 = false;
  /// Velarc with a DSP version below 5.00: no version request is made.
  bool VrcOldDsp = false;
  /// The older Velarc is served (VRColdButton pressed).
  bool OldVelarc = false;
  /// Percentage last shown for the image.
  std::int16_t ProgressPercent = 0;
  /// Text of the last error message box.
  std::string ErrorText;
  /// Build switch: debug view.
  bool DebugView = false;
  /// The port search runs.
  bool PortSearching = false;
  /// The port search saw a 17-byte answer.
  bool PortFound = false;
};

/// A Velarc of the first generation, which takes one image for the whole unit, in its seven-bit form.
inline bool firstGenerationVelarc(const RunState& state) { return state.ProductCode == "VC" && !state.UnitIsVrc2; }

/// A field as diagnosis and scripts see it.
using RunStateValue = std::variant<bool, std::int32_t, std::string, std::vector<std::string>, std::vector<SystemRecord>>;

/// The value of the field of that name; nothing when there is no such field.
std::optional<RunStateValue> runStateField(const RunState& state, std::string_view name);

}  // namespace firmlane
