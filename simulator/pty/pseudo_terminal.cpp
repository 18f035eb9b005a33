#include "pty/pseudo_terminal.h"

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace firmlane::sim {

namespace {

struct SpeedName {
  speed_t name;
  int baud;
};
constexpr std::array<SpeedName, 6> kSpeeds = {
    {{B9600, 9600}, {B19200, 19200}, {B38400, 38400}, {B57600, 57600}, {B115200, 115200}, {B4800, 4800}}};

[[noreturn]] void fail(const std::string& what) {
  const int error = errno;
  throw Failure(error, what + ": " + std::strerror(error));
}

/// Opens the program's side for a moment.
class OtherSide {
 public:
  explicit OtherSide(const std::string& path) : descriptor_(open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK)) {}
  ~OtherSide() {
    if (descriptor_ >= 0) {
      close(descriptor_);
    }
  }
  OtherSide(const OtherSide&) = delete;
  OtherSide& operator=(const OtherSide&) = delete;
  [[nodiscard]] int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

}  // namespace

PseudoTerminal::PseudoTerminal() : descriptor_(posix_openpt(O_RDWR | O_NOCTTY)) {
  if (descriptor_ < 0) {
    fail("No pseudo-terminal");
  }
  const int flags = fcntl(descriptor_, F_GETFL);
  std::array<char, 128> name{};
  if (grantpt(descriptor_) != 0 || unlockpt(descriptor_) != 0 || ptsname_r(descriptor_, name.data(), name.size()) != 0 ||
      fcntl(descriptor_, F_SETFL, flags | O_NONBLOCK) != 0 || fcntl(descriptor_, F_SETFD, FD_CLOEXEC) != 0) {
    close(descriptor_);
    fail("No pseudo-terminal");
  }
  path_ = name.data();
  // Opened and closed once, the device tells from then on whether somebody has it open.
  const OtherSide device(path_);
  termios settings{};
  tcgetattr(device.descriptor(), &settings);
  cfmakeraw(&settings);
  cfsetspeed(&settings, B9600);
  tcsetattr(device.descriptor(), TCSANOW, &settings);
}

PseudoTerminal::~PseudoTerminal() { vanish(); }

void PseudoTerminal::vanish() {
  if (descriptor_ >= 0) {
    close(std::exchange(descriptor_, -1));
  }
}

bool PseudoTerminal::isOpen() const {
  pollfd state{descriptor_, 0, 0};
  poll(&state, 1, 0);
  return descriptor_ >= 0 && (state.revents & POLLHUP) == 0;
}

LineSettings PseudoTerminal::settings() const {
  termios settings{};
  LineSettings line{0, Handshake::None};
  if (tcgetattr(descriptor_, &settings) != 0) {
    return line;
  }
  const speed_t speed = cfgetospeed(&settings);
  for (const SpeedName& known : kSpeeds) {
    if (known.name == speed) {
      line.baud = known.baud;
    }
  }
  if ((settings.c_cflag & CRTSCTS) != 0) {
    line.handshake = Handshake::Rts;
  } else if ((settings.c_iflag & (IXON | IXOFF)) != 0) {
    line.handshake = Handshake::XonXoff;
  }
  return line;
}

Bytes PseudoTerminal::read() {
  Bytes bytes;
  std::array<std::uint8_t, 4096> chunk{};
  for (ssize_t count = 0; (count = ::read(descriptor_, chunk.data(), chunk.size())) > 0;) {
    bytes.insert(bytes.end(), chunk.begin(), chunk.begin() + count);
  }
  return bytes;
}

void PseudoTerminal::write(ByteSpan bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(descriptor_, bytes.data(), bytes.size());
    if (count <= 0) {
      return;
    }
    bytes = bytes.subspan(static_cast<std::size_t>(count));
  }
}

void PseudoTerminal::discardUnread() {
  const OtherSide device(path_);
  if (device.descriptor() >= 0) {
    tcflush(device.descriptor(), TCIFLUSH);
  }
}

}  // namespace firmlane::sim
