#include "flash/flash_run.h"

#include "flash/silence_limit.h"
#include "platform/scope.h"

namespace firmlane {

namespace {

constexpr int kAnnounceLimit = 20;
constexpr int kStreamLimit = 180;
constexpr int kSecondTicks = 1000;
constexpr int kSlowBarInterval = 1500;
constexpr int kFrameSize = 9;

constexpr const char* kCorruptFlash =
    "Your receiver may have corrupt flash memory.\r\n\r\nPlease turn it off, click OK and then turn it back on to try again.";
constexpr const char* kPortBusy =
    "Your Serial Port is already open, please close your remote software if it is open and try again";

}  // namespace

void FlashRun::ConnectVelarc() {
  setUpLink();
  if (port_.IsOpen()) {
    wizard_.tellOutcome(OutcomeKind::Failure, kPortBusy);
    host_.showFailure(kPortBusy);
    return;
  }
  openPort();
  // A stream that failed has left it up, and ticks of whoever is next would show that stream's progress.
  const AtEnd nothingGoesOut([this] { supervision_.Sending = false; });
  const Activity::Run run(supervision_.activity, state_.ProductCode, state_.FlashTarget, [this] { return succeeded(); });
  try {
    runStates();
  } catch (const Failure&) {
    // A port that is lost, or fails outside of the senders as before a front panel's first batch, ends the run itself.
    state_.TimedOut = true;
    outcomes_.NoVerdict();
    throw;
  }
}

void FlashRun::runStates() {
  while (!awaitAnnouncement()) {
    if (state_.ProductCode == "VC") {
      return outcomes_.StoppedResponding();
    }
    if (state_.LegacyLink) {
      return outcomes_.NoConnection();
    }
    offerSecondChance();
  }
  if (!awaitErase()) {
    return outcomes_.StoppedResponding();
  }
  if (state_.FlashPhase == flash_phase::kErased) {
    program();
  }
  awaitVerdict();
  if (state_.TimedOut) {
    return outcomes_.NoVerdict();
  }
  if (state_.FlashPhase != flash_phase::kFinished) {
    return outcomes_.Undecided();
  }
  return receivePath_.FlashSucceeded ? outcomes_.Succeeded() : outcomes_.Refused();
}

void FlashRun::setUpLink() {
  supervision_.BarValue = 0;
  state_.ProgressPercent = 0;
  state_.TimedOut = false;
  supervision_.setLimit(kAnnounceLimit);
  receivePath_.WantAnswered = false;
  receivePath_.RxBuffer.clear();
  port_.setNumber(state_.ComPort);
  const LinkRule link = linkFor(state_);
  if (link.settings != nullptr) {
    port_.setSettings(link.settings);
  }
  if (link.outBuffer > 0) {
    port_.setOutBufferSize(link.outBuffer);
  }
  port_.setHandshake(Handshake::None);
  port_.setReceiveThreshold(kFrameSize);
}

void FlashRun::openPort() {
  port_.Open();
  port_.Read();
}

/// Returns whether the unit has announced itself and was answered.
bool FlashRun::awaitAnnouncement() {
  const Activity::Span waiting(supervision_.activity, Doing::WaitingForSwitch, kAnnounceLimit * kSecond);
  notes_.stage("Waiting for Receiver Response");
  notes_.bytes(0);
  form1_.Watchdog.start(kSecondTicks);
  form1_.Timer1.setInterval(kSlowBarInterval);
  state_.ImageDone = false;
  return awaitUnit([this] { return receivePath_.WantAnswered; });
}

void FlashRun::offerSecondChance() {
  host_.showMessageBox({.text = kCorruptFlash, .sign = MessageIcon::Exclamation});
  state_.LegacyLink = true;
  port_.setSettings("9600,N,8,1");
  state_.TimedOut = false;
  supervision_.WatchdogTicks = 0;
  frmAuto_.lblMain.Caption = "Now Programming Processor " + std::string(processorNumber(state_.FlashTarget));
  for (CheckBox* check : frmAuto_.checks()) {
    check->Value = 0;
  }
}

/// Returns whether the unit has said anything in time.
bool FlashRun::awaitErase() {
  const Activity::Span erasing(supervision_.activity, Doing::Erasing, eraseLimitFor(state_) * kSecond);
  enterErase();
  return awaitUnit([this] { return state_.FlashPhase != flash_phase::kErasing; });
}

/// Returns false when the limit has run out, whatever has come in the same moment. Throws Failure when the port is lost: what is
/// waited for cannot come any more.
bool FlashRun::awaitUnit(const std::function<bool()>& answered) {
  while (!answered() && !state_.TimedOut) {
    port_.requireOpen();
    host_.queue().WaitEvents();
  }
  return !state_.TimedOut;
}

void FlashRun::enterErase() {
  notes_.note("Got Response from Receiver", 0, "About to Start Communications with Receiver");
  form1_.ProgressBar1.Value = 0;
  form1_.ProgressBar1.Show();
  receivePath_.ExpectFrameEnd = true;
  form1_.Watchdog.setEnabled(true);
  form1_.Timer1.start(eraseBarIntervalFor(state_));
  supervision_.setLimit(eraseLimitFor(state_));
  wizard_.mirrorBar();
  receivePath_.RxBuffer.clear();
  form1_.lblTop.Caption = "Connected to " + unitName(state_) + ", now erasing FLASH Memory...";
  setWizardReset("Erasing Flash Memory...");
  form1_.Command3.Disable();
  supervision_.BarValue = 0;
  state_.FlashPhase = flash_phase::kErasing;
  notes_.stage("Waiting for Erased Confirmation");
}

void FlashRun::program() {
  const Activity::Span sending(supervision_.activity, Doing::Sending);
  enterProgram();
  const ImageRule image = imageFor(state_);
  if (!image.wholeUnit) {
    wizard_.advanceOverall();
  }
  sendImage(image.route);
}

void FlashRun::enterProgram() {
  notes_.stage("Starting to Program Front");
  setWizardReset("Programming Flash Memory...");
  receivePath_.ExpectFrameEnd = false;
  form1_.Watchdog.setEnabled(true);
  form1_.Timer1.stop();
  supervision_.setLimit(kStreamLimit);
  wizard_.setBar(0);
  receivePath_.RxBuffer.clear();
  form1_.lblTop.Caption = "Connected to unit, now erasing FLASH Memory...";
  form1_.Command3.Disable();
  supervision_.BarValue = 0;
}

void FlashRun::sendImage(ImageRoute route) {
  switch (route) {
    case ImageRoute::Flash:
      return processors_.ProgramFlash();
    case ImageRoute::NewHub:
      return processors_.ProgramNewHub();
    case ImageRoute::RF:
      return processors_.ProgramRF();
    case ImageRoute::Front:
      return frontPanel_.ProgramFront();
    case ImageRoute::None:
      return;
  }
}

void FlashRun::awaitVerdict() {
  const Activity::Span waiting(supervision_.activity, Doing::WaitingForVerdict, verdictLimit());
  const SilenceLimit silence(host_.queue());
  awaitUnit([&] {
    const bool given = state_.FlashPhase != flash_phase::kErased;
    if (!given && !form1_.Watchdog.enabled() && silence.passed()) {
      state_.TimedOut = true;
    }
    return given;
  });
}

Micros FlashRun::verdictLimit() const {
  const Timer& watchdog = form1_.Watchdog;
  return watchdog.enabled() ? supervision_.WatchdogLimit * watchdog.interval() * kMillisecond : SilenceLimit::kSeconds * kSecond;
}

bool FlashRun::succeeded() const {
  return !state_.TimedOut && state_.FlashPhase == flash_phase::kFinished && receivePath_.FlashSucceeded;
}

void FlashRun::setWizardReset(const char* text) {
  if (AutoForm* wizard = wizard_.form()) {
    wizard->lblReset.Caption = text;
  }
}

}  // namespace firmlane
