#include "link/version_readout.h"

#include "link/command_codes.h"
#include "link/frame.h"
#include "link/frame_ring.h"
#include "platform/screen.h"
#include "state/tell_failure.h"

namespace firmlane {

namespace {

constexpr int kTick = 100;  // ms
constexpr int kTicksAtOneSpeed = 20;
// Event passes.
constexpr int kPassesBeforeAsking = 5000;
constexpr int kPassesBetweenSpeeds = 10000;

constexpr const char* kFullSpeed = "57600,n,8,1";
constexpr const char* kOldSpeed = "9600,n,8,1";
constexpr const char* kVelarcSpeed = "19200,n,8,1";

constexpr std::size_t kCodeIndex = 4;
constexpr int kLastCodes = 110;

std::string toText(const Bytes& bytes) { return {bytes.begin(), bytes.end()}; }

}  // namespace

VersionReadout::VersionReadout(SerialPort& port, Activity& activity, RunState& state, FrmVersion& frmVersion)
    : port_(port), activity_(activity), state_(state), form_(frmVersion), answers_(state, frmVersion) {
  frmVersion.OnLoad = [this] { Form_Load(); };
  frmVersion.OnUnload = [this] { Form_Unload(); };
  frmVersion.Timer1.OnTimer = [this] { Timer1_Timer(); };
  frmVersion.Command1.OnClick = [this] { Command1_Click(); };
  port.OnComm = [this] { MSComm1_OnComm(); };
}

void VersionReadout::Form_Load() {
  state_.VersionsComplete = false;
  state_.GetVersionsSent = false;
  answers_.forgetVersions();
  begin();
  try {
    setUp(state_.ProductCode == "WS" ? kFullSpeed : kVelarcSpeed);
    port_.setNumber(state_.ComPort);
    openLine();
  } catch (const Failure& failure) {
    fail(failure);
    form_.Unload();
    return;
  }
  form_.host().setPointer(Pointer::Hourglass);
  converse([this] {
    if (state_.ProductCode == "WS") {
      ResetLink();
    }
    askWhoAfterDelay();
  });
}

void VersionReadout::Form_Unload() {
  reading_.reset();
  ++conversation_;
  lineUp_ = false;
  port_.Close();
  state_.IdRxBuf.clear();
  // The tick that would give the pointer back no longer comes.
  form_.host().setPointer(Pointer::Normal);
}

void VersionReadout::Command1_Click() {
  state_.VersionsComplete = false;
  state_.GetVersionsSent = false;
  state_.GotId = false;
  state_.SerialRead = false;
  if (state_.ProductCode != "VC" && !state_.VersionsRead) {
    state_.LegacyLink = false;  // the search for the speed starts over
  }
  begin();
  converse([this] {
    setUp(kFullSpeed);
    // Closed only when the click fell into a change of speed, or after the port was lost.
    if (!port_.IsOpen()) {
      openLine();
    }
    form_.host().setPointer(Pointer::Hourglass);
    ResetLink();
    askWhoAfterDelay();
  });
}

void VersionReadout::begin() {
  reading_.emplace(activity_, Doing::ReadingUnit);
  ++conversation_;
  BaudToggled_ = false;
  RetryTicks_ = 0;
  state_.IdRxBuf.clear();
  form_.Timer1.start(kTick);
}

void VersionReadout::setUp(const std::string& settings) {
  port_.setSettings(settings);
  port_.setHandshake(Handshake::None);
  port_.setReceiveThreshold(1);
}

void VersionReadout::openLine() {
  port_.Open();
  lineUp_ = true;
}

void VersionReadout::Timer1_Timer() {
  ++RetryTicks_;
  converse([this] {
    if (state_.ProductCode != "VC" && RetryTicks_ == kTicksAtOneSpeed && !changeSpeed()) {
      return;
    }
    askNext();
    if (state_.VersionsRead) {
      form_.host().setPointer(Pointer::Normal);
      form_.Timer1.stop();
      reading_.reset();
    }
  });
}

bool VersionReadout::changeSpeed() {
  BaudToggled_ = !BaudToggled_;
  port_.setSettings(BaudToggled_ ? kOldSpeed : kFullSpeed);
  lineUp_ = false;
  port_.Close();
  state_.IdRxBuf.clear();
  if (!Delay(kPassesBetweenSpeeds)) {
    return false;
  }
  openLine();
  state_.LegacyLink = BaudToggled_;
  // Only now: a tick that came during the delay found a count above the limit and started no second change.
  RetryTicks_ = 0;
  return true;
}

void VersionReadout::askNext() {
  if (state_.GotId && !state_.VrcOldDsp) {
    state_.GetVersionsSent = true;
    GetVersions();
    return;
  }
  if (!BaudToggled_) {
    ResetLink();
  }
  WhoIsThere();
}

void VersionReadout::askWhoAfterDelay() {
  if (Delay(kPassesBeforeAsking)) {
    WhoIsThere();
  }
}

bool VersionReadout::Delay(int count) {
  const int conversation = conversation_;
  for (int pass = 1; pass <= count && conversation == conversation_; ++pass) {
    form_.host().queue().PumpEvents();
  }
  return conversation == conversation_;
}

void VersionReadout::converse(const std::function<void()>& step) {
  const int conversation = conversation_;
  try {
    step();
  } catch (const Failure& failure) {
    if (conversation == conversation_) {
      fail(failure);
    }
  }
}

void VersionReadout::fail(const Failure& failure) {
  reading_.reset();
  lineUp_ = false;
  form_.Timer1.stop();
  form_.host().setPointer(Pointer::Normal);
  tellFailure(form_.host(), state_, "Error: ", failure);
}

void VersionReadout::ResetLink() { send(command_code::kResetLink); }
void VersionReadout::WhoIsThere() { send(command_code::kWhoIsThere); }
void VersionReadout::GetVersions() { send(command_code::kGetVersions); }

void VersionReadout::send(std::uint8_t code) {
  if (lineUp_) {
    port_.Write(buildFrame(FrameKind::RunFrame, 0, code, {}));
  }
}

void VersionReadout::MSComm1_OnComm() {
  if (state_.IdRxBuf.empty() && !startBuffer()) {
    return;
  }
  state_.IdRxBuf += toText(port_.Read());
  if (state_.IdRxBuf.size() > kLongestBuffer) {
    state_.IdRxBuf.clear();
  }
  if (!answerIsIn()) {
    return;
  }
  if (static_cast<std::uint8_t>(state_.IdRxBuf[kCodeIndex]) % kLastCodes != 0) {
    form_.host().queue().PumpEvents();
    if (!answerIsIn()) {
      return;  // an event inside has delivered it, or has ended the conversation
    }
  }
  state_.IdQueue.at(static_cast<std::size_t>(state_.IdQueueWrite)) = state_.IdRxBuf;
  state_.IdQueueWrite = nextSlot(state_.IdQueueWrite);
  state_.IdRxBuf.clear();
  answers_.GetID2();
}

bool VersionReadout::startBuffer() {
  state_.IdRxBuf = toText(port_.Read());
  if (state_.IdRxBuf.empty() || static_cast<std::uint8_t>(state_.IdRxBuf.front()) != kFrameStart) {
    state_.IdRxBuf.clear();
    return false;
  }
  return true;
}

bool VersionReadout::answerIsIn() const {
  return state_.IdRxBuf.size() >= kSmallestFrame && state_.IdRxBuf.find(static_cast<char>(kRunFrameEnd)) != std::string::npos;
}

}  // namespace firmlane
