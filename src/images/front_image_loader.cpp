#include "images/front_image_loader.h"

#include "images/digit_text.h"
#include "images/s_record_reader.h"
#include "state/file_names.h"
#include "state/text.h"

namespace firmlane {

namespace {

constexpr const char* kConvertedFile = file_name::kWirelessFront;
constexpr const char* kWirelessSource = "FNTLCD.s19";
constexpr const char* kVelarcSource = file_name::kVelarc2Front;
constexpr std::size_t kBytesPerPass = 64;
constexpr char kDataRecord = '1';
constexpr char kLastRecord = '9';

std::string numbered(const Failure& failure) { return failure.description() + ", " + std::to_string(failure.number()); }

std::int16_t codeBytes(const std::string& digitText) {
  return static_cast<std::int16_t>(nearest(static_cast<std::int32_t>(digitText.size()), static_cast<int>(kDigitsPerByte)));
}

}  // namespace

bool FrontImageLoader::ConvertFront() { return OpenConvertedFile(); }

bool FrontImageLoader::OpenConvertedFile() {
  notes_.note("Opening Firmware File", 0, "Opening pre-converted firmware file");
  try {
    readConverted();
  } catch (const Failure& failure) {
    if (velarcImage_) {
      state_.FrontImage.clear();
    }
    notes_.note("Unable to open firmware file!", 0, "Failed to open firmware file, the error is: " + numbered(failure));
    return tell(failure);
  }
  notes_.note("Opened firmware file ", 0, "File length is " + std::to_string(state_.FrontCodeBytes) + " Bytes");
  return true;
}

void FrontImageLoader::readConverted() {
  const std::string file = Files::readText(files_.path(kConvertedFile));
  std::string field;
  if (!lastField(file, kConvertedFile, field)) {
    // No field, nothing read: the image is still the one from before, and no reason to start a run.
    state_.FrontCodeBytes = codeBytes(state_.FrontImage);
  }
  requireDigitText(field, kConvertedFile);
  state_.FrontImage = field;
  velarcImage_ = false;
  state_.FrontCodeBytes = codeBytes(field);
}

bool FrontImageLoader::LoadFrontImage() {
  SRecordText.clear();
  velarcImage_ = true;
  if (OpenFile() && ConvertFile()) {
    return true;
  }
  // Half an image must not pass for a whole one in a later run.
  state_.FrontImage.clear();
  return false;
}

bool FrontImageLoader::OpenFile() {
  try {
    readSource();
    return true;
  } catch (const Failure& failure) {
    return tell(failure);
  }
}

void FrontImageLoader::readSource() {
  std::size_t count{};
  for (const std::uint8_t byte : Files::read(files_.path(sourceName()))) {
    SRecordText += std::to_string(byte);
    // A pass for each single byte would make the user wait for seconds.
    if (++count % kBytesPerPass == 0) {
      host_.queue().PumpEvents();
    }
  }
}

bool FrontImageLoader::ConvertFile() {
  try {
    convert();
    return true;
  } catch (const Failure& failure) {
    return tell(failure);
  }
}

void FrontImageLoader::convert() {
  state_.FrontImage.clear();
  const SRecordReader records(SRecordText, sourceName());
  std::size_t pos = records.next(1);
  do {
    if (records.recordType(pos) != kDataRecord) {
      throw Failure(failure_number::kTypeMismatch, sourceName() + " holds a record that is neither S1 nor S9");
    }
    state_.FrontImage += records.recordData(pos);
    pos = records.next(pos);
    host_.queue().PumpEvents();
  } while (records.recordType(pos) != kLastRecord);
  if (records.othersBehind(pos)) {
    // A damaged type character must not pass for the end: the panel would get half its code.
    throw Failure(failure_number::kTypeMismatch, sourceName() + " holds records behind its S9 record");
  }
  requireDigitText(state_.FrontImage, sourceName());
  state_.FrontCodeBytes = codeBytes(state_.FrontImage);
  form1_.txtlen.Text = std::to_string(state_.FrontCodeBytes);
}

std::string FrontImageLoader::sourceName() const { return state_.ProductCode == "WS" ? kWirelessSource : kVelarcSource; }

bool FrontImageLoader::tell(const Failure& failure) {
  host_.showFailure("Error opening or reading S-Record file!, " + numbered(failure));
  return false;
}

}  // namespace firmlane
