#include "units/loader.h"

#include <numeric>
#include <optional>

#include "units/srecords.h"
#include "units/unit_frames.h"

namespace firmlane::sim {

namespace {

/// Start byte 1, the image plain or with the top bit of each byte ahead of the rest, the image's sum kept to seven bits. The
/// image tells its length; one that does not ends with silence.
class RawLoader : public Loader {
 public:
  explicit RawLoader(bool sevenBit) : sevenBit_(sevenBit) {}

  LoaderWish take(std::uint8_t byte) override {
    if (!started_) {
      started_ = true;
      if (byte != 1) {
        complain("image does not begin with the start byte");
      }
      return LoaderWish::More;
    }
    if (const auto length = announcedLength(image_); length && image_.size() == *length && !topBit_) {
      takeSum(byte);
      return LoaderWish::Finished;
    }
    takeImage(byte);
    return LoaderWish::More;
  }

  void finish() override { complain("stream was cut short"); }
  [[nodiscard]] Micros silenceLimit() const override { return 2 * kSecond; }

 private:
  void takeImage(std::uint8_t byte) {
    if (!sevenBit_) {
      image_.push_back(byte);
    } else if (!topBit_) {
      topBit_ = byte;
      if (byte > 1) {
        complain("top bit of an image byte is neither 0 nor 1");
      }
    } else {
      if (byte > kSevenBits) {
        complain("image byte of more than seven bits");
      }
      image_.push_back(static_cast<std::uint8_t>(*topBit_ << 7U | (byte & kSevenBits)));
      topBit_.reset();
    }
  }

  void takeSum(std::uint8_t byte) {
    if (byte != (std::accumulate(image_.begin(), image_.end(), 0U) & kSevenBits)) {
      complain("wrong sum behind the image");
    }
  }

  bool sevenBit_;
  bool started_ = false;
  std::optional<std::uint8_t> topBit_;
};

/// S-record text, ended by an end record or by silence.
class RecordLoader : public Loader {
 public:
  LoaderWish take(std::uint8_t byte) override {
    if (byte != '\n') {
      line_.push_back(static_cast<char>(byte));
      if (line_.size() > kLongestLine) {
        complain("S-record line without end");
        line_.clear();
      }
      return LoaderWish::More;
    }
    return takeLine() ? LoaderWish::Finished : LoaderWish::More;
  }

  void finish() override {
    if (!line_.empty()) {
      takeLine();
    }
  }

  [[nodiscard]] Micros silenceLimit() const override { return 3 * kSecond; }
  [[nodiscard]] bool needsRts() const override { return true; }

 private:
  static constexpr std::size_t kLongestLine = 520;

  /// True when the line was the end record.
  bool takeLine() {
    if (!line_.empty() && line_.back() == '\r') {
      line_.pop_back();
    }
    const std::optional<Record> record = parseRecord(line_);
    line_.clear();
    if (!record) {
      complain("bad S-record");
      return false;
    }
    if (record->isData()) {
      if (record->address != image_.size()) {
        complain("S-record out of order");
      }
      image_.insert(image_.end(), record->data.begin(), record->data.end());
    }
    return record->isEnd();
  }

  std::string line_;
};

/// Two length bytes, then batches of 32 hexadecimal digit values: the code batch by batch, then the vector table in two.
class FrontLoader : public Loader {
 public:
  LoaderWish take(std::uint8_t byte) override {
    if (lengthBytes_ < 2) {
      length_ = length_ * 128 + (byte & kSevenBits);
      if (byte > kSevenBits) {
        complain("length byte of more than seven bits");
      }
      if (++lengthBytes_ == 2 && length_ < kVectorSize) {
        complain("length leaves no room for the vector table");
      }
      return LoaderWish::More;
    }
    takeValue(byte);
    if (++values_ % kBatchValues != 0) {
      return LoaderWish::More;
    }
    return vectorBatches_ == 0 ? endOfCodeBatch() : endOfVectorBatch();
  }

  void finish() override { complain("stream was cut short"); }
  // The program may pause for more than a second before its first batch.
  [[nodiscard]] Micros silenceLimit() const override { return 10 * kSecond; }

 private:
  static constexpr std::size_t kVectorSize = 32;
  static constexpr std::size_t kBatchValues = 32;

  void takeValue(std::uint8_t value) {
    if (value > 0x0F) {
      complain("value above 15 in a batch");
    }
    if (values_ % 2 == 0) {
      image_.push_back(static_cast<std::uint8_t>(value << 4U));
    } else {
      image_.back() = static_cast<std::uint8_t>(image_.back() | (value & 0x0FU));
    }
  }

  LoaderWish endOfCodeBatch() {
    const std::size_t codeSize = length_ > kVectorSize ? length_ - kVectorSize : 0;
    if (image_.size() < codeSize) {
      return LoaderWish::NextBatch;
    }
    image_.resize(codeSize);  // the last batch runs over into the vector table, which comes once more
    vectorBatches_ = 1;
    return LoaderWish::Vector;
  }

  LoaderWish endOfVectorBatch() { return ++vectorBatches_ == 2 ? LoaderWish::Vector : LoaderWish::Finished; }

  int lengthBytes_ = 0;
  std::size_t length_ = 0;
  std::size_t values_ = 0;
  int vectorBatches_ = 0;  // asked for
};

class MicrophoneLoader : public Loader {
 public:
  LoaderWish take(std::uint8_t byte) override {
    image_.push_back(byte);
    if (image_.size() % kGroupSize != 0) {
      return LoaderWish::More;
    }
    return image_.size() < kGroups * kGroupSize ? LoaderWish::Group : LoaderWish::Finished;
  }

  void finish() override { complain("table was cut short"); }
  [[nodiscard]] Micros silenceLimit() const override { return 30 * kSecond; }

 private:
  static constexpr std::size_t kGroupSize = 6;
  static constexpr std::size_t kGroups = 105;
};

}  // namespace

std::unique_ptr<Loader> makeLoader(LoaderKind kind) {
  switch (kind) {
    case LoaderKind::Records:
      return std::make_unique<RecordLoader>();
    case LoaderKind::Front:
      return std::make_unique<FrontLoader>();
    case LoaderKind::SevenBit:
      return std::make_unique<RawLoader>(true);
    case LoaderKind::Plain:
      break;
  }
  return std::make_unique<RawLoader>(false);
}

std::unique_ptr<Loader> makeMicrophoneLoader() { return std::make_unique<MicrophoneLoader>(); }

}  // namespace firmlane::sim
