#include "images/image_sender.h"

#include <limits>

namespace firmlane {

namespace {

constexpr std::uint8_t kImageStart = 0x01;
constexpr std::uint8_t kSevenBits = 0x7F;
constexpr int kTopBit = 7;
constexpr int kFull = 100;
constexpr int kPlainInterval = 500;
constexpr int kVerdictLimit = 10;
constexpr int kTextVerdictLimit = 200;
constexpr int kProgressStep = 50;

/// Length of an image file. Throws Failure when the file is missing or larger than the program counts.
std::int32_t imageLength(const std::string& path) {
  const std::int64_t length = Files::length(path);
  if (length > std::numeric_limits<std::int32_t>::max()) {
    throw Failure(failure_number::kOverflow, "The file is too large: " + path);
  }
  return static_cast<std::int32_t>(length);
}

}  // namespace

void ImageSender::DumpFile2(const std::string& path) {
  try {
    streamWithSum(path);
  } catch (const Failure& failure) {
    stream_.tellFailed(failure);
  }
}

void ImageSender::DumpFile3(const std::string& path) {
  try {
    streamText(path);
  } catch (const Failure& failure) {
    stream_.tellFailed(failure);
  }
}

void ImageSender::streamWithSum(const std::string& path) {
  form1_.lblProgressInfo.Show();
  const std::int32_t length = imageLength(path);
  state_.ImageDone = false;
  const Bytes image = Files::read(path);
  port_.Write({kImageStart});
  supervision_.beginSending(length);
  expectFrameEnd_ = true;
  const bool sevenBit = firstGenerationVelarc(state_);
  if (!sevenBit) {
    form1_.Watchdog.setInterval(kPlainInterval);
  }
  std::uint32_t sum = 0;
  for (const std::uint8_t byte : image) {
    sum += byte;
    writeImageByte(byte, sevenBit);
    host_.queue().PumpEvents();
    ++supervision_.BytesSent;
  }
  port_.Write({static_cast<std::uint8_t>(sum & kSevenBits)});
  showImageOut(kVerdictLimit);
}

void ImageSender::streamText(const std::string& path) {
  form1_.lblProgressInfo.Show();
  port_.setReceiveThreshold(1);
  const std::int32_t length = imageLength(path);
  const Bytes image = Files::read(path);
  state_.ImageDone = false;
  stream_.beginUnwatched(length);
  reopenUnderRts();
  for (const std::uint8_t byte : image) {
    port_.Write({byte});
    host_.queue().PumpEvents();
    ++supervision_.BytesSent;
    if (supervision_.BytesSent % kProgressStep == 1) {
      supervision_.UpdateProgress();
    }
  }
  showImageOut(kTextVerdictLimit);
}

void ImageSender::writeImageByte(std::uint8_t byte, bool sevenBit) {
  if (sevenBit) {
    port_.Write({static_cast<std::uint8_t>(byte >> kTopBit), static_cast<std::uint8_t>(byte & kSevenBits)});
  } else {
    port_.Write({byte});
  }
}

void ImageSender::reopenUnderRts() {
  port_.Close();
  port_.setReceiveThreshold(1);
  port_.setHandshake(Handshake::Rts);
  port_.Open();
  port_.Read();  // what an adapter brings of earlier times would stand in front of the verdict
}

void ImageSender::showImageOut(int verdictLimit) {
  state_.ImageDone = true;
  supervision_.showProgress(kFull);
  stream_.end(verdictLimit);
}

}  // namespace firmlane
