#include "units/unit.h"

#include <algorithm>

#include "units/running_unit.h"

namespace firmlane::sim {

namespace {

// Announcements, reports and confirmations carry different codes; the program has to take all of them alike.
constexpr std::uint8_t kAnnouncement = 6;
constexpr std::uint8_t kReport = 31;
constexpr std::uint8_t kWantToProgram = 30;
constexpr std::uint8_t kWantMicrophones = 80;
constexpr std::uint8_t kStartReport = 1;  // sub-code
constexpr std::uint8_t kNextBatch = 86;
constexpr std::uint8_t kVector = 87;
constexpr std::uint8_t kAcknowledge = 'A';

constexpr std::size_t kRoundsOfCorruptUnit = 100;
constexpr std::size_t kFaultInStreamAfter = 200;
constexpr std::size_t kBytesPerChange = 64;
constexpr int kAcknowledgementsBeforeFault = 3;
constexpr Micros kLateAnswer = 500 * kMillisecond;
constexpr Micros kLateErase = 90 * kSecond;
constexpr Micros kLateVerdict = 20 * kSecond;
constexpr Micros kFirmwareStart = kSecond;

}  // namespace

Unit::Unit(const UnitModel& model, UnitLine& line, UnitClock& clock) : line_(line), clock_(clock), speed_(model.bootSpeed) {
  state_.model = &model;
  state_.serial = model.serial;
  for (const ProcessorModel& processor : model.processors) {
    state_.processors.push_back({&processor, processor.version, false});
  }
}

void Unit::powerOn() {
  if (isOn()) {
    return;
  }
  life_ = std::make_shared<char>();
  speed_ = state_.model->bootSpeed;
  reader_.reset();
  state_.target = -1;
  state_.received = 0;
  dead_ = false;
  verdictGiven_ = false;
  happened("power", "on");
  enter(Phase::Starting);
  later(timing.firstAnnouncement, [this] { announce(0); });
}

void Unit::powerOff() {
  if (!isOn()) {
    return;
  }
  life_.reset();
  loader_.reset();
  line_.holdBack(false);
  happened("power", "off");
  enter(Phase::Off);
}

void Unit::startRunning() {
  powerOff();
  powerOn();
  life_ = std::make_shared<char>();
  speed_ = state_.model->runSpeed;
  enter(Phase::Running);
}

void Unit::setSerial(std::int32_t serial) {
  state_.serial = serial;
  changed();
}

void Unit::setVersion(std::string_view processor, const Version& version) {
  for (ProcessorState& state : state_.processors) {
    if (processor == state.model->name) {
      state.version = version;
      state.blank = false;
    }
  }
  changed();
}

void Unit::hear(std::uint8_t byte) {
  const std::optional<LineSettings> programEnd = line_.programEnd();
  if (!isOn() || !programEnd) {
    return;
  }
  if (state_.phase == Phase::Receiving || state_.phase == Phase::Microphones) {
    hearTransfer(byte, *programEnd);
    return;
  }
  if (state_.phase != Phase::Starting && state_.phase != Phase::Running) {
    return;
  }
  if (programEnd->baud != speed_) {
    reader_.reset();
    return;
  }
  const int badFrames = reader_.badFrames();
  if (const std::optional<HeardFrame> frame = reader_.take(byte)) {
    hearFrame(*frame);
  } else if (reader_.badFrames() != badFrames) {
    happened("complaint", "frame with a wrong checksum");
  }
}

// Start-up

void Unit::announce(std::size_t step) {
  if (state_.phase != Phase::Starting) {
    return;
  }
  const std::size_t count = state_.processors.size();
  const std::size_t rounds = canRun() ? static_cast<std::size_t>(timing.announcementRounds) : kRoundsOfCorruptUnit;
  if (step == rounds * count) {
    announceWhileStartingFirmware();
    return;
  }
  const std::uint8_t subCode = state_.processors[step % count].model->announce;
  sendFrame(FrameEnd::Boot, 0, kAnnouncement, ByteSpan(&subCode, 1));
  later(timing.announcementGap, [this, step] { announce(step + 1); });
}

void Unit::announceWhileStartingFirmware() {
  if (!canRun()) {
    return;
  }
  speed_ = state_.model->runSpeed;
  reader_.reset();
  if (state_.model->family == Family::Wireless) {
    // The firmware takes a microphone table while it starts; a computer on the running speed hears this announcement only.
    sendFrame(FrameEnd::Boot, 0, kAnnouncement, ByteSpan(&kStartReport, 1));
  }
  later(kFirmwareStart, [this] {
    if (state_.phase == Phase::Starting) {
      enter(Phase::Running);
    }
  });
}

bool Unit::canRun() const {
  const ProcessorState* dsp = state_.find("DSP");
  return dsp == nullptr || !dsp->blank;
}

void Unit::hearFrame(const HeardFrame& frame) {
  if (state_.phase == Phase::Running) {
    hearCommand(frame);
    return;
  }
  if (frame.end != FrameEnd::Boot || frame.data.size() != 1) {
    return;
  }
  const std::uint8_t subCode = frame.data[0];
  if (frame.code == kWantMicrophones && subCode == kStartReport && state_.model->family == Family::Wireless) {
    beginTransfer(Phase::Microphones, makeMicrophoneLoader());
    return;
  }
  if (frame.code != kWantToProgram || speed_ != state_.model->bootSpeed) {
    return;
  }
  for (std::size_t i = 0; i < state_.processors.size(); ++i) {
    if (state_.processors[i].model->want == subCode) {
      startProgramming(i);
      return;
    }
  }
  happened("complaint", "no boot loader for sub-code " + std::to_string(subCode));
}

void Unit::hearCommand(const HeardFrame& frame) {
  if (isForceReset(frame)) {
    powerOff();
    powerOn();
    return;
  }
  const std::int32_t serial = state_.serial;
  const int presetLoads = state_.presetLoads;
  std::optional<UnitAnswer> answer = answerTo(frame, state_);
  if (state_.serial != serial) {
    happened("stored", "serial number " + std::to_string(state_.serial));
  }
  if (answer && isSetSerial(frame)) {
    spoilReadBack(answer->address, faults);
  }
  if (state_.presetLoads != presetLoads) {
    happened("stored", "preset 0");
  }
  if (answer) {
    changed();
    later(faults.lateAnswer ? kLateAnswer : timing.answer,
          [this, answer = *answer] { sendFrame(answer.end, answer.address, answer.code, answer.data); });
  }
}

// Programming

void Unit::startProgramming(std::size_t processor) {
  state_.target = static_cast<int>(processor);
  target().blank = true;
  enter(Phase::Erasing);
  Micros span = timing.erase > 0 ? timing.erase : target().model->eraseTime;
  if (faults.lateErase) {
    span += kLateErase;
  }
  later(span, [this] { reportErased(); });
}

void Unit::reportErased() {
  if (faults.refusesErase) {
    state_.complaint = "FLASH cannot be erased";
    giveVerdict(false);
    return;
  }
  beginTransfer(Phase::Receiving, makeLoader(target().model->loader));
  report(static_cast<std::uint8_t>(target().model->announce + 1));
}

void Unit::beginTransfer(Phase phase, std::unique_ptr<Loader> loader) {
  loader_ = std::move(loader);
  complete_ = false;
  acknowledgements_ = 0;
  state_.received = 0;
  enter(phase);
}

void Unit::hearTransfer(std::uint8_t byte, const LineSettings& programEnd) {
  if (dead_ || complete_) {
    return;
  }
  if (programEnd.baud != speed_) {
    loader_->complain("bytes at another speed");
  }
  if (loader_->needsRts() && programEnd.handshake != Handshake::Rts) {
    loader_->complain("bytes without RTS handshake");
  }
  lastHeard_ = clock_.now();
  if (state_.received++ == 0) {
    watchSilence(silenceLimit());
  }
  const LoaderWish wish = loader_->take(byte);
  if (state_.received % kBytesPerChange == 0) {
    changed();
  }
  if (state_.received == kFaultInStreamAfter && state_.phase == Phase::Receiving) {
    meetFaultsInStream();
  }
  grant(wish);
}

void Unit::meetFaultsInStream() {
  if (faults.diesInStream) {
    dead_ = true;
  }
  if (faults.holdsLine) {
    line_.holdBack(true);
  }
  if (faults.earlyVerdict) {
    verdictGiven_ = true;
    report(static_cast<std::uint8_t>(target().model->announce + 2));
  }
}

void Unit::watchSilence(Micros span) {
  later(span, [this] {
    if (dead_ || complete_) {
      return;
    }
    const Micros left = silenceLimit() - (clock_.now() - lastHeard_);
    if (left > 0) {
      watchSilence(left);
      return;
    }
    loader_->finish();
    finishTransfer();
  });
}

Micros Unit::silenceLimit() const { return std::max(loader_->silenceLimit(), timing.leastSilence); }

void Unit::grant(LoaderWish wish) {
  if (dead_ || wish == LoaderWish::More) {
    return;
  }
  if (state_.phase == Phase::Microphones) {
    if (acknowledges()) {
      later(timing.answer, [this] { send({kAcknowledge}); });
    }
  } else if (wish != LoaderWish::Finished && acknowledges()) {
    later(timing.answer, [this, wish] { report(wish == LoaderWish::NextBatch ? kNextBatch : kVector); });
  }
  if (wish == LoaderWish::Finished) {
    finishTransfer();
  }
}

bool Unit::acknowledges() { return ++acknowledgements_ <= kAcknowledgementsBeforeFault || !faults.dropsAcknowledgements; }

void Unit::finishTransfer() {
  complete_ = true;
  if (state_.phase == Phase::Microphones) {
    later(timing.verdict, [this] { storeMicrophones(); });  // the last acknowledgement goes out first, at the old speed
    return;
  }
  enter(Phase::Judging);
  later(timing.verdict + (faults.lateVerdict ? kLateVerdict : 0), [this] { judge(); });
}

void Unit::judge() {
  const FirmwareCheck check = checkFirmware(loader_->image(), target().model->image);
  state_.complaint = loader_->complaint().empty() ? check.complaint : loader_->complaint();
  if (state_.complaint.empty() && faults.refuses) {
    state_.complaint = "refuses every image";
  }
  const bool good = state_.complaint.empty();
  if (good) {
    target().version = check.version;
    target().blank = false;
  }
  giveVerdict(good);
}

void Unit::giveVerdict(bool good) {
  state_.verdictGood = good;
  if (!verdictGiven_ && !faults.noVerdict) {
    report(static_cast<std::uint8_t>(target().model->announce + (good ? 2 : 3)));
  }
  enter(Phase::Finished);
  happened("verdict", good ? "programmed " + state_.versionOf(target().model->name) : "failed: " + state_.complaint);
}

void Unit::storeMicrophones() {
  if (loader_->complaint().empty()) {
    state_.microphoneTable = loader_->image();
    happened("stored", "microphone table");
  } else {
    happened("complaint", loader_->complaint());
  }
  speed_ = state_.model->runSpeed;
  reader_.reset();
  enter(Phase::Running);
}

// Sending and telling

void Unit::report(std::uint8_t subCode) { sendFrame(FrameEnd::Boot, 0, kReport, ByteSpan(&subCode, 1)); }

void Unit::sendFrame(FrameEnd end, std::int32_t address, std::uint8_t code, ByteSpan data) {
  Bytes frame = unitFrame(end, address, code, data);
  spoilFrame(frame, frame.size() - (end == FrameEnd::Boot ? 3 : 2), faults, random_);
  send(std::move(frame));
}

void Unit::send(Bytes bytes) {
  if (!faults.silent) {
    line_.send(bytes, speed_);
  }
}

void Unit::later(Micros span, std::function<void()> action) {
  clock_.after(span, [life = std::weak_ptr<char>(life_), action = std::move(action)] {
    if (life.lock()) {
      action();
    }
  });
}

void Unit::enter(Phase phase) {
  state_.phase = phase;
  happened("phase", std::string(phaseName(phase)));
  changed();
}

void Unit::changed() const {
  if (onChange) {
    onChange();
  }
}

void Unit::happened(const std::string& what, const std::string& text) {
  if (onHappening) {
    const bool ofProcessor = state_.target >= 0 && what != "power" && what != "stored";
    onHappening({what, ofProcessor ? target().model->name : "", text});
  }
}

}  // namespace firmlane::sim
