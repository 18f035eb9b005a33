#include "flash/front_panel.h"

#include <algorithm>

#include "flash/processor_programming.h"
#include "flash/silence_limit.h"
#include "images/digit_text.h"
#include "state/text.h"

namespace firmlane {

namespace {

constexpr int kBatchDigits = 64;
constexpr int kVectorDigits = 128;
constexpr int kVectorBatches = 2;
constexpr int kDigitsPerValue = 2;
constexpr int kProgressStep = 16;
constexpr int kSevenBitBase = 128;
constexpr int kVerdictLimit = 200;

/// A pause, in milliseconds a tick and ticks.
struct Pause {
  int interval;
  int ticks;
};
constexpr Pause kBeforeLength{2, 5};
// The panels of a Velarc need more time than those of a receiver.
constexpr Pause kBeforeFirstBatch{100, 10};
constexpr Pause kBeforeCodeBatch{10, 25};

}  // namespace

void FrontPanel::ProgramFront() {
  showSending(supervision_, wizard_, form1_);
  const int high = state_.FrontCodeBytes / kSevenBitBase;
  const int low = state_.FrontCodeBytes - high * kSevenBitBase;
  notes_.note("Sending Program length", 0,
              "Program Length Bytes are " + std::to_string(high) + " and " + std::to_string(low) + kCrLf + kCrLf);
  notes_.errors("Program Length is " + std::to_string(state_.FrontCodeBytes));
  notes_.lengthBytes(high, low);
  if (!port_.IsOpen()) {
    port_.Open();
  }
  delay_.Delay(kBeforeLength.interval, kBeforeLength.ticks);
  port_.Write({static_cast<std::uint8_t>(high)});
  port_.Write({static_cast<std::uint8_t>(low)});
  notes_.note("Sent Program Length", 0, "Now Starting to send firmware bytes");
  form1_.Watchdog.setEnabled(true);
  port_.setHandshake(Handshake::XonXoff);
  DumpFront();
}

void FrontPanel::DumpFront() {
  try {
    prepareStream();
    if (stream()) {
      finish();
    }
  } catch (const Failure& failure) {
    stream_.tellFailed(failure);
  }
}

void FrontPanel::prepareStream() {
  state_.FrontStreaming = true;
  // What an earlier panel asked for last must not be taken for a request of this one.
  state_.FrontVectorAsked = false;
  form1_.lblProgressInfo.Show();
  port_.setReceiveThreshold(1);
  stream_.beginUnwatched(static_cast<std::int32_t>(state_.FrontImage.size()));
  if (state_.InVrcAutoWizard) {
    delay_.Delay(kBeforeFirstBatch.interval, kBeforeFirstBatch.ticks);
  }
  offset_ = 0;
  vectorBatches_ = 0;
  highestSent_ = 0;
}

/// Returns whether the panel has taken all of it.
bool FrontPanel::stream() {
  notes_.note("Sending First Batch", 0, "Programming Code Bytes");
  sendCodeBatch();
  while (vectorBatches_ < kVectorBatches) {
    if (offset_ < supervision_.BytesTotal) {
      if (!awaitRequest()) {
        return false;
      }
      if (state_.FrontBlockOk) {
        notes_.stage("Sending Next Batch");
        notes_.errors("Programming Code Bytes");
        sendCodeBatch();
        continue;
      }
      if (vectorBatches_ == 0) {
        offset_ = supervision_.BytesTotal - kVectorDigits;
      }
    }
    sendVectorBatch();
  }
  return true;
}

bool FrontPanel::awaitRequest() {
  // A panel that has given its verdict gets the rest if it asks on, and is not waited for if it does not.
  constexpr int kAfterVerdict = 5;
  const SilenceLimit silence(host_.queue());
  const auto asked = [this] { return state_.FrontBlockOk || state_.FrontVectorAsked; };
  const auto noVerdict = [this] { return state_.FlashPhase == flash_phase::kErased; };
  while (!asked() && !silence.passed(noVerdict() ? SilenceLimit::kSeconds : kAfterVerdict)) {
    port_.requireOpen();
    host_.queue().WaitEvents();
  }
  if (!asked() && noVerdict()) {
    state_.TimedOut = true;
  }
  return asked();
}

void FrontPanel::sendCodeBatch() {
  if (state_.InVrcAutoWizard) {
    delay_.Delay(kBeforeCodeBatch.interval, kBeforeCodeBatch.ticks);
  }
  state_.FrontBlockOk = false;
  sendBatch();
}

void FrontPanel::sendVectorBatch() {
  notes_.stage("Sending Vector Table");
  notes_.errors("Programming Vector Table");
  state_.FrontVectorAsked = false;
  ++vectorBatches_;
  sendBatch();
}

void FrontPanel::sendBatch() {
  for (int i = 1; i < kBatchDigits; i += kDigitsPerValue) {
    sendValue(offset_ + i);
  }
  offset_ += kBatchDigits;
  if (offset_ > static_cast<int>(kDigitTextLimit)) {
    throw Failure(failure_number::kOverflow, "The front panel image is too long");
  }
  notes_.bytes(offset_);
}

void FrontPanel::sendValue(int position) {
  if (position < 1) {
    throw Failure(failure_number::kInvalidArgument, "The front panel image is shorter than its vector table");
  }
  // Behind the end of the image a batch is filled up with zeros.
  const auto start = std::min(state_.FrontImage.size(), static_cast<std::size_t>(position - 1));
  const std::uint8_t value = Asc2Num(std::string_view(state_.FrontImage).substr(start, kDigitsPerValue));
  port_.Write({value});
  highestSent_ = std::max<int>(highestSent_, value);
  notes_.highestSent(highestSent_);
  host_.queue().PumpEvents();
  supervision_.BytesSent = nearest(position, static_cast<int>(kDigitsPerByte));
  if (supervision_.BytesSent % kProgressStep == 0) {
    supervision_.UpdateProgress();
  }
}

void FrontPanel::finish() {
  const int percent = supervision_.percentSent(supervision_.progressFactor());
  supervision_.showPercentText(percent);
  form1_.ProgressBar1.Value = percent;
  if (state_.InAutoWizard) {
    frmAuto_.Progress1.Value = form1_.ProgressBar1.Value.get();
  }
  notes_.note("Finished Programming Front", offset_, "Successful!");
  stream_.end(kVerdictLimit);
}

}  // namespace firmlane
