#include "personal/serial_file.h"

#include <bit>
#include <limits>

#include "platform/files.h"

namespace firmlane {

namespace {
constexpr std::size_t kNumberBytes = 4;
constexpr unsigned kBitsPerByte = 8;
}  // namespace

std::int32_t SerialFile::readNumber() {
  Bytes content;
  try {
    content = Files::read(kName);
  } catch (const Failure& failure) {
    if (failure.number() != failure_number::kFileNotFound) {
      throw;
    }
  }
  if (content.size() < kNumberBytes) {
    return kFirstNumber;
  }
  std::uint32_t number = 0;
  for (std::size_t i = kNumberBytes; i > 0; --i) {
    number = number << kBitsPerByte | content[i - 1];
  }
  return std::bit_cast<std::int32_t>(number);
}

void SerialFile::write(std::int32_t number) {
  Bytes content;
  auto rest = std::bit_cast<std::uint32_t>(number);
  for (std::size_t i = 0; i < kNumberBytes; ++i) {
    content.push_back(static_cast<std::uint8_t>(rest));
    rest >>= kBitsPerByte;
  }
  Files::replaceDurably(kName, content);
}

void SerialFile::ReadSerialFile() {
  state_.SerialNumber = readNumber();
  state_.FileSerial = state_.SerialNumber;
  form1_.txtNum.Text = std::to_string(state_.SerialNumber);
}

void SerialFile::WriteSerialFile() { write(state_.SerialNumber); }

void SerialFile::reserve() {
  if (state_.SerialNumber < 0 || state_.SerialNumber == std::numeric_limits<std::int32_t>::max()) {
    throw Failure(failure_number::kOverflow, std::to_string(state_.SerialNumber) + " cannot be a serial number");
  }
  before_.reset();
  if (state_.SerialNumber + 1 > state_.FileSerial) {
    before_ = readNumber();
    write(state_.SerialNumber + 1);
  }
}

void SerialFile::giveBack() {
  if (before_) {
    write(*before_);
    before_.reset();
  }
}

}  // namespace firmlane
