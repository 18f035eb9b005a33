#include "images/s_record_reader.h"

#include <cctype>

#include "images/digit_text.h"
#include "platform/failure.h"

namespace firmlane {

namespace {

// Places in a record, in digits: two a character.
constexpr std::size_t kCharacter = 2;
constexpr std::size_t kType = 2;
constexpr std::size_t kCount = 4;
constexpr std::size_t kData = 16;
constexpr std::size_t kFrame = 12;  // "S", type, count and line end
constexpr int kAddressAndChecksum = 3;

bool isHex(char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; }

}  // namespace

int SRecordReader::recordCount(std::size_t pos) const {
  if (at(pos) != 'S') {
    refuse("no record begins", pos);
  }
  const char high = at(pos + kCount);
  const char low = at(pos + kCount + kCharacter);
  if (!isHex(high) || !isHex(low)) {
    refuse("the count is not a hexadecimal number", pos + kCount);
  }
  const int count = H2D(std::string{high, low});
  const std::size_t end = pos + kFrame + kDigitsPerByte * static_cast<std::size_t>(count);
  if (at(end - 2 * kCharacter) != '\r' || at(end - kCharacter) != '\n') {
    refuse("no line end (CR LF) where the record's count puts it", end - 2 * kCharacter);
  }
  return count;
}

char SRecordReader::recordType(std::size_t pos) const {
  if (at(pos) != 'S') {
    refuse("no record begins", pos);
  }
  return at(pos + kType);
}

std::string_view SRecordReader::recordData(std::size_t pos) const {
  const int count = recordCount(pos);
  if (count < kAddressAndChecksum) {
    refuse("the record's count is too small", pos + kCount);
  }
  return digits_.substr(pos - 1 + kData, kDigitsPerByte * static_cast<std::size_t>(count - kAddressAndChecksum));
}

std::size_t SRecordReader::next(std::size_t pos) const {
  return pos + kFrame + kDigitsPerByte * static_cast<std::size_t>(recordCount(pos));
}

bool SRecordReader::othersBehind(std::size_t pos) const {
  for (std::size_t i = pos + kCharacter; i < digits_.size(); i += kCharacter) {
    if (at(i) == 'S') {
      return true;
    }
  }
  return false;
}

char SRecordReader::at(std::size_t pos) const {
  constexpr int kTen = 10;
  if (pos + 1 > digits_.size()) {
    refuse("the file ends", pos);
  }
  return static_cast<char>((digits_[pos - 1] - '0') * kTen + (digits_[pos] - '0'));
}

void SRecordReader::refuse(const std::string& why, std::size_t pos) const {
  throw Failure(failure_number::kTypeMismatch, name_ + " is not an S-record file for a front panel: " + why + " at byte " +
                                                   std::to_string(pos / kCharacter + 1));
}

}  // namespace firmlane
