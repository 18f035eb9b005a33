#include "personal/serial_file.h"

#include <algorithm>
#include <bit>
#include <cerrno>

namespace firmlane {

namespace {

constexpr std::size_t kNumberBytes = 4;
constexpr unsigned kBitsPerByte = 8;
constexpr Micros kLockLimit = 5 * kSecond;
constexpr Micros kLockPoll = 10 * kMillisecond;

/// The file itself. A link to a counter that several stations share stays a link, and the counter is replaced where it lies.
std::string place() { return Files::behindLink(SerialFile::kName); }

std::int32_t readNumber() {
  const std::string path = place();
  const Bytes content = Files::isMissing(path) ? Bytes() : Files::read(path);
  if (content.size() < kNumberBytes) {
    return SerialFile::kFirstNumber;
  }
  std::uint32_t number{};
  for (std::size_t i = kNumberBytes; i > 0; --i) {
    number = number << kBitsPerByte | content[i - 1];
  }
  return std::bit_cast<std::int32_t>(number);
}

Bytes bytesOf(std::int32_t number) {
  Bytes content;
  auto rest = std::bit_cast<std::uint32_t>(number);
  for (std::size_t i = 0; i < kNumberBytes; ++i) {
    content.push_back(static_cast<std::uint8_t>(rest));
    rest >>= kBitsPerByte;
  }
  return content;
}

}  // namespace

void SerialFile::write(std::int32_t number) const { files_.replace(place(), bytesOf(number)); }

std::string SerialFile::whyUnfit(std::int32_t number) {
  return std::to_string(number) + " cannot be a serial number: a receiver takes numbers from 0 to " +
         std::to_string(kHighestNumber);
}

void SerialFile::ReadSerialFile() {
  state_.SerialNumber = readNumber();
  state_.FileSerial = state_.SerialNumber;
  edited_.reset();
  show();
}

void SerialFile::WriteSerialFile() {
  const FileLock held = lock();
  const std::int32_t now = readNumber();
  // What stood before this station's own edit, as long as nobody has counted on from there.
  const std::int32_t floor = edited_ && edited_->to == now ? edited_->from : now;
  edited_ = Step{floor, std::max(floor, state_.SerialNumber)};
  if (edited_->to != now) {
    write(edited_->to);
  }
}

void SerialFile::reserve() {
  reserved_.reset();
  if (state_.SerialNumber >= state_.FileSerial) {
    const FileLock held = lock();
    const std::int32_t now = readNumber();
    state_.SerialNumber = std::max(now, state_.SerialNumber);
    show();
    if (fits(state_.SerialNumber)) {
      write(state_.SerialNumber + 1);
      reserved_ = Step{now, state_.SerialNumber + 1};
    }
  }
  if (!fits(state_.SerialNumber)) {
    throw Failure(failure_number::kOverflow, whyUnfit(state_.SerialNumber));
  }
}

void SerialFile::giveBack() {
  try {
    if (reserved_) {
      const FileLock held = lock();
      if (readNumber() == reserved_->to) {
        write(reserved_->from);
      }
    }
  } catch (const Failure&) {
    // Skipped: better a number that no unit has than one that two have.
  }
  reserved_.reset();
}

FileLock SerialFile::lock() const {
  EventQueue& queue = form1_.host().queue();
  const std::string path = place() + ".lock";
  const Micros giveUpAt = queue.now() + kLockLimit;
  for (;;) {
    if (auto taken = FileLock::tryTake(path)) {
      return std::move(*taken);
    }
    if (queue.now() >= giveUpAt) {
      throw Failure(EBUSY, std::string("Another station keeps ") + kName + " locked");
    }
    // It lasts as long as another station needs to count up. No handler runs meanwhile: none may see the number half taken.
    queue.holdUntilTime(std::min(giveUpAt, queue.now() + kLockPoll));
  }
}

void SerialFile::show() { form1_.txtNum.Text = std::to_string(state_.SerialNumber); }

}  // namespace firmlane
