#include "images/image_stream.h"

namespace firmlane {

namespace {
constexpr int kWatchdogInterval = 50;
constexpr int kBarInterval = 100;
constexpr const char* kImageIsOut = "Finished sending new firmware to the unit, now waiting to get response from unit...";
}  // namespace

void ImageStream::beginUnwatched(std::int32_t total) {
  supervision_.beginSending(total);
  wizard_.setBar(0);
  host_.queue().PumpEvents();
  form1_.Watchdog.setInterval(kWatchdogInterval);
  form1_.Watchdog.stop();
  host_.queue().PumpEvents();
}

void ImageStream::end(int verdictLimit) {
  supervision_.Sending = false;
  form1_.lblTop.Caption = kImageIsOut;
  form1_.Timer1.start(kBarInterval);
  supervision_.setLimit(verdictLimit);
}

void ImageStream::tellFailed(const Failure& failure) {
  if (failure.number() == failure_number::kPortGone) {
    throw Failure(failure);
  }
  host_.showMessageBox({.text = "Error encountered while trying to open file, please retry.",
                        .title = "Open File",
                        .icon = MessageIcon::Exclamation});
}

}  // namespace firmlane
