#include "link/receive_path.h"

#include <algorithm>

#include "link/sub_codes.h"
#include "state/text.h"

namespace firmlane {

namespace {

constexpr std::uint8_t kAcknowledge = 'A';
constexpr std::int16_t kExpectedEnd = 8;
constexpr std::size_t kIdAnswerLength = 17;
constexpr int kCodeModulus = 127;
constexpr int kIdlePasses = 20001;
constexpr int kDelayInterval = 2;
constexpr int kDelayTicks = 5;

/// Position from 1 of the first ">" at or behind `start`, 0 if there is none.
std::int16_t findFrameEnd(const Bytes& bytes, std::int16_t start) {
  const auto from = std::min(bytes.size(), static_cast<std::size_t>(start - 1));
  const auto found = std::find(bytes.begin() + static_cast<std::ptrdiff_t>(from), bytes.end(), kBootFrameEnd);
  return found == bytes.end() ? std::int16_t{0} : static_cast<std::int16_t>(found - bytes.begin() + 1);
}

void append(Bytes& to, const Bytes& bytes) { to.insert(to.end(), bytes.begin(), bytes.end()); }

/// Some loaders need a moment between their announcement and the answer.
void idleCount() {
  volatile int passes = kIdlePasses;
  while (passes > 0) {
    const int left = passes - 1;
    passes = left;
  }
}

}  // namespace

ReceivePath::ReceivePath(FormHost& host, SerialPort& port, CommandSet& commands, ShortDelay& delay, RunState& state, Form1& form1,
                         FrmAuto& frmAuto, FrmVRCAuto& frmVRCAuto)
    : host_(host),
      port_(port),
      commands_(commands),
      delay_(delay),
      state_(state),
      form1_(form1),
      frmAuto_(frmAuto),
      frmVRCAuto_(frmVRCAuto) {
  port.OnComm = [this] { MSComm1_OnComm(); };
}

void ReceivePath::MSComm1_OnComm() {
  if (RxBuffer.empty() && !startBuffer()) {
    return;
  }
  if (state_.WantAcked || WantAnswered) {
    host_.queue().PumpEvents();
  }
  if (state_.SerialStep == serial_step::kProgramming) {
    takeOneAnswer();
    return;
  }
  RxEventCount = static_cast<std::int16_t>((RxEventCount + 1) & INT16_MAX);
  append(RxBuffer, port_.Read());
  if (RxBuffer.size() > kLongestBuffer) {
    RxBuffer.clear();
  }
  cutFrame(RxBuffer);
}

bool ReceivePath::startBuffer() {
  RxBuffer = port_.Read();
  const bool good =
      !RxBuffer.empty() && (RxBuffer.front() == kFrameStart || (RxBuffer.front() == kAcknowledge && ExpectFrameEnd));
  if (!good) {
    RxBuffer.clear();
  }
  return good;
}

void ReceivePath::takeOneAnswer() {
  if (state_.SerialAnswerTaken) {
    return;
  }
  state_.SerialAnswerTaken = true;
  append(RxBuffer, port_.Read());
  deliver();
}

void ReceivePath::cutFrame(Bytes work) {
  if (work.empty() || (state_.FrontStreaming && work.front() == ' ')) {
    return;
  }
  std::int16_t end = findFrameEnd(work, RxSearchStart);
  showWork(work, end);
  if (ExpectFrameEnd && end != kExpectedEnd && !dropFirstByte(work)) {
    return;
  }
  dropToFrameStart(work);
  end = findFrameEnd(work, RxSearchStart);
  showWork(work, end);
  if (work.size() >= kSmallestFrame && end >= 1 && end == FrameLength[work[4] % kCodeModulus]) {
    deliver();
  } else if (work.size() == kIdAnswerLength && state_.FlashPhase == flash_phase::kIdle && state_.PortSearching) {
    // The answer of a unit that is up; a byte in it may well have the value of ">".
    state_.PortFound = true;
  }
}

bool ReceivePath::dropFirstByte(Bytes& work) {
  if (work.front() == kAcknowledge) {
    state_.MicAck = true;
    return false;
  }
  work.erase(work.begin());
  port_.Read();
  RxBuffer = work;
  return true;
}

void ReceivePath::dropToFrameStart(Bytes& work) {
  const auto start = std::find(work.begin(), work.end(), kFrameStart);
  if (start != work.begin()) {
    work.erase(work.begin(), start);
    RxBuffer = work;
  }
}

void ReceivePath::showWork(const Bytes& work, std::int16_t end) {
  form1_.msgcount.Text = std::to_string(RxEventCount);
  form1_.msglength.Text = std::to_string(work.size());
  form1_.msgcode.Text = std::to_string(end);
  std::string text;
  for (const std::uint8_t byte : work) {
    text += " " + std::to_string(byte);
  }
  form1_.msgtext.Text = text;
}

void ReceivePath::deliver() {
  RxQueue_.at(static_cast<std::size_t>(RxQueueWrite_)) = std::move(RxBuffer);
  RxQueueWrite_ = nextSlot(RxQueueWrite_);
  RxBuffer.clear();
  RxSearchStart = 1;
  GetMsg();
  RxQueue_.at(static_cast<std::size_t>(RxQueueRead_)).clear();
}

void ReceivePath::GetMsg() {
  const Bytes message = RxQueue_.at(static_cast<std::size_t>(RxQueueRead_));
  RxQueueRead_ = nextSlot(RxQueueRead_);
  form1_.txtstat.Text = "Got a message, going to valid check it";
  if (Valid_Check(message, FrameLength) != 1) {
    host_.showFailure("Communications Error");
    form1_.txtstat.Text = "Message is invalid";
    return;
  }
  if (const SubCodeRule* rule = findSubCode(message[5], state_, MicMode)) {
    act(*rule, message);
  }
}

void ReceivePath::act(const SubCodeRule& rule, const Bytes& message) {
  if (rule.secondGeneration) {
    state_.UnitIsVrc2 = true;
  }
  switch (rule.action) {
    case SubCodeAction::Announced:
      answer(rule);
      break;
    case SubCodeAction::Erased:
      state_.FlashPhase = flash_phase::kErased;
      break;
    case SubCodeAction::Programmed:
    case SubCodeAction::Failed:
      state_.FlashPhase = flash_phase::kFinished;
      FlashSucceeded = rule.action == SubCodeAction::Programmed;
      break;
    case SubCodeAction::PresetLoaded:
      PresetLoaded = true;
      break;
    case SubCodeAction::SerialStored:
      SerialReadBack = (message[1] * 128 + message[2]) * 128 + message[3];
      state_.GotId = true;
      break;
    case SubCodeAction::NextBlock:
      state_.FrontBlockOk = true;
      delay_.Delay(kDelayInterval, kDelayTicks);
      break;
    case SubCodeAction::VectorTable:
      state_.FrontVectorAsked = true;
      delay_.Delay(kDelayInterval, kDelayTicks);
      break;
    case SubCodeAction::SecondGeneration:
      break;
  }
}

void ReceivePath::answer(const SubCodeRule& rule) {
  if (rule.timeBox != TimeBox::None) {
    AutoForm& form = rule.timeBox == TimeBox::Velarc ? static_cast<AutoForm&>(frmVRCAuto_) : frmAuto_;
    form.txtQtime.Text = host_.queue().clock().timeOfDay();
  }
  if (rule.idlesFirst) {
    idleCount();
  }
  (commands_.*rule.answer)();
  WantAnswered = true;
  if (rule.setsWantAcked) {
    state_.WantAcked = true;
  }
}

}  // namespace firmlane
