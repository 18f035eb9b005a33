#include "platform/serial_port.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace firmlane {

namespace {

constexpr int kBitsPerByte = 10;
constexpr std::size_t kBacklog = 64;
constexpr Micros kDrainLimit = 500 * kMillisecond;
constexpr Micros kHeldBackPoll = 5 * kMillisecond;
constexpr Micros kHeldBackLimit = 60 * kSecond;  // far beyond any pause of a unit that lives

int parseSpeed(const std::string& settings) {
  int baud = 0;
  const char* end = settings.data() + settings.size();
  const auto [rest, error] = std::from_chars(settings.data(), end, baud);
  const std::string format(rest, end);
  if (error != std::errc() || baud <= 0 || (format != ",N,8,1" && format != ",n,8,1")) {
    throw Failure(failure_number::kInvalidArgument, "Invalid serial port settings: " + settings);
  }
  return baud;
}

}  // namespace

SerialPort::SerialPort(EventQueue& queue, SerialDriver& driver, Recorder& recorder)
    : queue_(queue), driver_(driver), recorder_(recorder), receiveEvent_(queue, [this] {
        // The handler that ran just before may have read what this event was raised for.
        if (thresholdReached() && OnComm) {
          OnComm();
        }
      }) {
  driver_.received = [this](ByteSpan bytes) { take(bytes); };
  driver_.lost = [this](const Failure& failure) { lose(failure); };
}

SerialPort::~SerialPort() {
  if (open_) {
    driver_.close();
  }
  driver_.received = nullptr;
  driver_.lost = nullptr;
}

void SerialPort::setSettings(const std::string& settings) { apply({parseSpeed(settings), settings_.handshake}); }

void SerialPort::setHandshake(Handshake handshake) { apply({settings_.baud, handshake}); }

void SerialPort::apply(const LineSettings& settings) {
  if (settings == settings_) {
    return;
  }
  settings_ = settings;
  if (open_) {
    driver_.configure(settings_);
    recorder_.portSet(number_, settings_);
  }
}

void SerialPort::Open() {
  if (open_) {
    throw Failure(failure_number::kPortInUse, "The serial port is already open");
  }
  if (number_ < 1 || number_ > 16) {
    throw Failure(failure_number::kPortNumber, "Invalid port number " + std::to_string(number_));
  }
  openDriver();
  open_ = true;
  lost_.reset();
  // A late answer to what an earlier opening asked would stand in front of the next one.
  driver_.discard();
  waiting_.clear();
  lineFreeAt_ = queue_.now();
}

void SerialPort::openDriver() {
  try {
    driver_.open(number_, settings_);
    recorder_.portOpened(number_, settings_);
  } catch (const Failure& failure) {
    recorder_.portRefused(number_, failure);
    throw;
  }
}

void SerialPort::Close() {
  if (open_) {
    drain();
  }
  if (open_) {
    driver_.close();
    recorder_.portClosed(number_);
  }
  open_ = false;
  // Of a port that was lost, too: what came from it must not strike whoever is next.
  waiting_.clear();
  receiveEvent_.drop();
}

void SerialPort::drain() {
  const Micros limit = std::max(queue_.now(), lineFreeAt_) + kDrainLimit;
  queue_.holdUntilTime(lineFreeAt_);
  while (open_ && driver_.unsent() > 0 && queue_.now() < limit) {
    queue_.holdUntilTime(std::min(limit, queue_.now() + kHeldBackPoll));
  }
}

Bytes SerialPort::Read() {
  if (open_) {
    driver_.fetch();
  }
  return std::exchange(waiting_, {});
}

void SerialPort::lose(const Failure& failure) {
  open_ = false;
  lost_ = failure;
  recorder_.portLost(number_, failure);
  receiveEvent_.raise();
}

void SerialPort::take(ByteSpan bytes) {
  recorder_.heard(number_, bytes);
  waiting_.insert(waiting_.end(), bytes.begin(), bytes.end());
  raiseIfReached();
}

void SerialPort::setReceiveThreshold(int bytes) {
  receiveThreshold_ = bytes;
  raiseIfReached();
}

void SerialPort::raiseIfReached() {
  if (thresholdReached()) {
    receiveEvent_.raise();
  }
}

bool SerialPort::thresholdReached() const {
  return receiveThreshold_ > 0 && waiting_.size() >= static_cast<std::size_t>(receiveThreshold_);
}

void SerialPort::requireOpen() const {
  if (open_) {
    return;
  }
  throw lost_ ? *lost_ : Failure(failure_number::kPortClosed, "The serial port is not open");
}

Micros SerialPort::byteTime() const { return kBitsPerByte * kSecond / settings_.baud; }

std::size_t SerialPort::backlogLimit() const { return std::min(kBacklog, static_cast<std::size_t>(std::max(1, outBufferSize_))); }

void SerialPort::waitForRoom(std::size_t count) {
  const std::size_t limit = backlogLimit();
  const Micros ahead = static_cast<Micros>(limit - std::min(count, limit)) * byteTime();
  if (lineFreeAt_ - queue_.now() <= ahead && driver_.unsent() <= limit) {
    return;
  }
  // Once the backlog is full, half of it drains before the next byte: one sleep for many bytes, and still no gap on the line.
  const Micros roomAt = lineFreeAt_ - std::min(ahead, static_cast<Micros>(limit / 2) * byteTime());
  while (open_ && queue_.now() < roomAt) {
    queue_.waitEventsUntil(roomAt);
  }
  waitWhileHeldBack(limit);
}

void SerialPort::waitWhileHeldBack(std::size_t limit) {
  std::size_t unsent = driver_.unsent();
  Micros giveUpAt = queue_.now() + kHeldBackLimit;
  while (open_ && unsent > limit) {
    queue_.waitEventsUntil(queue_.now() + kHeldBackPoll);
    const std::size_t before = std::exchange(unsent, driver_.unsent());
    if (unsent != before) {
      giveUpAt = queue_.now() + kHeldBackLimit;
    } else if (open_ && queue_.now() >= giveUpAt) {
      throw Failure(failure_number::kLineHeldBack, "The unit takes no more data");
    }
  }
}

void SerialPort::Write(ByteSpan bytes) {
  requireOpen();
  waitForRoom(bytes.size());
  requireOpen();
  recorder_.sent(number_, bytes);
  driver_.send(bytes);
  lineFreeAt_ = std::max(lineFreeAt_, queue_.now()) + static_cast<Micros>(bytes.size()) * byteTime();
}

}  // namespace firmlane
