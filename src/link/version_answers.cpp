#include "link/version_answers.h"

#include <algorithm>
#include <span>

#include "link/frame_ring.h"
#include "platform/failure.h"
#include "state/text.h"

namespace firmlane {

namespace {

constexpr std::size_t kSmallestAnswer = 13;
constexpr int kIdAnswer = 2;
constexpr int kVersionAnswer = 95;
constexpr int kLongVersionAnswer = 105;
constexpr int kCodeByte = 5;
constexpr int kModelByte = 13;
constexpr int kModelDigit = 1'000'000;
constexpr int kGroup = 128;
constexpr int kVelarcVersions = 500;  // DSP 5.00 is the first Velarc that answers the version request
constexpr double kHundred = 100;

/// Where an answer holds a number, and where it goes.
struct Field {
  int position;
  std::int16_t RunState::*number;
};
using Fields = std::span<const Field>;

constexpr Field kVelarcIdDsp[] = {{8, &RunState::VrcDspVer1}, {9, &RunState::VrcDspVer2}, {10, &RunState::VrcDspVer3}};
constexpr Field kWirelessIdDsp[] = {{8, &RunState::VerDspMajor}, {9, &RunState::VerDspMinor}};

constexpr Field kWirelessHub[] = {{6, &RunState::VerHubMajor}, {7, &RunState::VerHubMinor}};
constexpr Field kRf1[] = {{8, &RunState::VerRf1Major}, {9, &RunState::VerRf1Minor}};
constexpr Field kRf2[] = {{10, &RunState::VerRf2Major}, {11, &RunState::VerRf2Minor}};
constexpr Field kFront[] = {{12, &RunState::VerFrontMajor}, {13, &RunState::VerFrontMinor}};

constexpr Field kVelarcHub[] = {{6, &RunState::VrcHubVer1}, {7, &RunState::VrcHubVer2}, {8, &RunState::VrcHubVer3}};
constexpr Field kVelarcDsp[] = {{9, &RunState::VrcDspVer1}, {10, &RunState::VrcDspVer2}, {11, &RunState::VrcDspVer3}};
constexpr Field kFrontA[] = {{12, &RunState::VrcFrontAVer1}, {13, &RunState::VrcFrontAVer2}, {14, &RunState::VrcFrontAVer3}};
constexpr Field kFrontB[] = {{15, &RunState::VrcFrontBVer1}, {16, &RunState::VrcFrontBVer2}, {17, &RunState::VrcFrontBVer3}};

/// Highest numbers that are taken for a version. Beyond them the answer was garbled.
struct Limit {
  int major;
  int minor;
};
constexpr Limit kHubLimit{10, 100};
constexpr Limit kRfLimit{8, 100};
constexpr Limit kFrontLimit{10, 100};

bool exceeds(const RunState& state, Fields fields, const Limit& limit) {
  return state.*fields[0].number > limit.major || state.*fields[1].number > limit.minor;
}

/// The numbers as they are shown: joined by points, without padding.
std::string joined(const RunState& state, Fields fields) {
  std::string text;
  for (const Field& field : fields) {
    text += (text.empty() ? "" : ".") + std::to_string(state.*field.number);
  }
  return text;
}

/// RF versions that cannot be are 0.0, and the reading goes on.
void clearBeyondLimit(RunState& state, Fields fields) {
  if (exceeds(state, fields, kRfLimit)) {
    state.*fields[0].number = 0;
    state.*fields[1].number = 0;
  }
}

}  // namespace

/// An answer by positions from 1. Reading beyond its end throws Failure.
class VersionAnswers::Answer {
 public:
  explicit Answer(std::string bytes) : bytes_(std::move(bytes)) {}

  [[nodiscard]] std::size_t size() const { return bytes_.size(); }
  [[nodiscard]] int at(int position) const {
    if (position > static_cast<int>(bytes_.size())) {
      throw Failure(failure_number::kSubscriptOutOfRange, "The unit's answer is cut short");
    }
    return static_cast<std::uint8_t>(bytes_[static_cast<std::size_t>(position - 1)]);
  }
  [[nodiscard]] std::int32_t serial() const { return (at(2) * kGroup + at(3)) * kGroup + at(4); }
  /// Stores in the order of the fields; those in front of a cut stay stored.
  void store(RunState& state, Fields fields) const {
    for (const Field& field : fields) {
      state.*field.number = static_cast<std::int16_t>(at(field.position));
    }
  }

 private:
  std::string bytes_;
};

void VersionAnswers::forgetVersions() {
  for (const Fields fields : {Fields(kWirelessIdDsp), Fields(kWirelessHub), Fields(kRf1), Fields(kRf2), Fields(kFront),
                              Fields(kVelarcHub), Fields(kVelarcDsp), Fields(kFrontA), Fields(kFrontB)}) {
    for (const Field& field : fields) {
      state_.*field.number = 0;
    }
  }
}

void VersionAnswers::GetID2() {
  const Answer answer(state_.IdQueue.at(static_cast<std::size_t>(state_.IdQueueRead)));
  state_.IdQueueRead = nextSlot(state_.IdQueueRead);
  try {
    digest(answer);
  } catch (const Failure&) {
    // Cut short: what came before the cut counts, and the conversation asks again.
  }
}

void VersionAnswers::digest(const Answer& answer) {
  // An ID answer counts as long as none has been taken, also behind an answer of another code that left a serial number.
  if (!state_.GotId && (!state_.SerialRead || answer.at(kCodeByte) == kIdAnswer) && !readId(answer)) {
    return;
  }
  if (answer.size() < kSmallestAnswer) {
    return;
  }
  switch (answer.at(kCodeByte)) {
    case kIdAnswer:
      state_.GotId = true;
      break;
    case kVersionAnswer:
    case kLongVersionAnswer:
      // Not raised by an answer that is cut short: it is asked for again.
      state_.VersionsRead = readVersions(answer);
      break;
    default:
      break;
  }
}

bool VersionAnswers::readId(const Answer& answer) {
  state_.SerialNumber = answer.serial();
  if (state_.SerialNumber == 0) {
    return false;
  }
  state_.VrcOldDsp = false;
  if (!velarc()) {
    readWirelessDsp(answer);
  } else if (!readVelarcDsp(answer)) {
    return false;
  }
  showId(answer, readModel(answer));
  return true;
}

void VersionAnswers::readWirelessDsp(const Answer& answer) {
  constexpr std::int16_t kMinorOfZero = 3;  // units of the first series report 0 for their third version
  answer.store(state_, kWirelessIdDsp);
  if (state_.VerDspMinor == 0) {
    state_.VerDspMinor = kMinorOfZero;
  }
}

bool VersionAnswers::readVelarcDsp(const Answer& answer) {
  if (answer.at(kCodeByte) != kIdAnswer) {
    return false;
  }
  answer.store(state_, kVelarcIdDsp);
  if (state_.VrcDspVer1 * kGroup + state_.VrcDspVer2 < kVelarcVersions) {
    state_.VrcOldDsp = true;
    state_.VersionsRead = true;
    state_.VersionsComplete = true;
    state_.LegacyLink = true;
  }
  return true;
}

/// Returns whether the unit is a QDR.
bool VersionAnswers::readModel(const Answer& answer) {
  const int byte = answer.at(kModelByte);
  if (velarc()) {
    state_.UnitModel = static_cast<std::int16_t>(byte);
    state_.HasRf2 = byte == 1 || byte == 3;
    return false;
  }
  constexpr int kFirstModel = 2;
  constexpr int kFirstQdr = 4;
  constexpr int kLastQdr = 5;
  constexpr int kTwoSections[] = {3, 8, 9};
  int model = byte - kFirstModel;
  const bool qdr = model == kFirstQdr || model == kLastQdr;
  if (qdr) {
    model -= 2;
  }
  state_.UnitModel = static_cast<std::int16_t>(model);
  if (std::ranges::find(kTwoSections, model) != std::end(kTwoSections)) {
    state_.HasRf2 = true;
  }
  return qdr;
}

void VersionAnswers::showId(const Answer& answer, bool qdr) {
  // A unit with a model byte that no model has (0 or 1) keeps its bare number: six digits, never a negative one.
  const int modelDigit = std::max(state_.UnitModel + 1, 0);
  state_.SerialNumber = modelDigit * kModelDigit + answer.serial() % kModelDigit;
  form_.lblSN.Caption = std::to_string(state_.SerialNumber) + (qdr ? " (QDR)" : "");
  state_.SerialRead = true;
  if (!velarc()) {
    form_.lblDSP.Caption = joined(state_, kWirelessIdDsp);
  } else if (state_.VrcOldDsp) {
    form_.lblDSP.Caption = plainNumber((state_.VrcDspVer1 * kGroup + state_.VrcDspVer2) / kHundred);
  }
}

/// False when a version is out of range: the answer was garbled.
bool VersionAnswers::readVersions(const Answer& answer) {
  const Fields hub = velarc() ? Fields(kVelarcHub) : Fields(kWirelessHub);
  answer.store(state_, hub);
  form_.lblHub.Caption = joined(state_, hub);
  if (!velarc() && exceeds(state_, hub, kHubLimit)) {
    return false;
  }
  readMiddle(answer);
  readSecondSection(answer);
  answer.store(state_, kFront);
  if (exceeds(state_, kFront, kFrontLimit)) {
    return false;
  }
  form_.lblFront.Caption = joined(state_, kFront);
  state_.VersionsComplete = true;
  return true;
}

void VersionAnswers::readMiddle(const Answer& answer) {
  if (velarc()) {
    answer.store(state_, kVelarcDsp);
    form_.lblDSP.Caption = joined(state_, kVelarcDsp);
    answer.store(state_, kFrontA);
    return;
  }
  answer.store(state_, kRf1);
  clearBeyondLimit(state_, kRf1);
  form_.lblRF1.Caption = joined(state_, kRf1);
}

void VersionAnswers::readSecondSection(const Answer& answer) {
  if (!state_.HasRf2) {
    form_.lblRF2.Caption = "N/A";
    return;
  }
  answer.store(state_, velarc() ? Fields(kFrontB) : Fields(kRf2));
  clearBeyondLimit(state_, kRf2);
  form_.lblRF2.Caption = joined(state_, kRf2);
}

}  // namespace firmlane
