#include "platform/qt/standard_input.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace firmlane {

namespace {
bool isPipe(int descriptor) {
  struct stat status {};
  return fstat(descriptor, &status) == 0 && (S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode));
}
}  // namespace

void holdStandardStreams() {
  int descriptor = 0;
  do {
    descriptor = ::open("/dev/null", O_RDWR);  // takes the lowest number that is free
  } while (descriptor >= 0 && descriptor <= STDERR_FILENO);
  ::close(descriptor);
}

StandardInput::StandardInput(std::function<void(const std::string&)> line, std::function<void()> ended, EndOfFile endOfFile)
    : line_(std::move(line)), ended_(std::move(ended)), endOfFile_(endOfFile), notifier_(STDIN_FILENO, QSocketNotifier::Read) {
  connect(&notifier_, &QSocketNotifier::activated, this, &StandardInput::take);
}

void StandardInput::take() {
  std::array<char, 16384> chunk{};
  const ssize_t count = read(STDIN_FILENO, chunk.data(), chunk.size());
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
    return;
  }
  if (count <= 0) {
    over_ = true;
    notifier_.setEnabled(false);
    if (!pending_.empty()) {
      line_(std::exchange(pending_, {}));  // a last line without its end
    }
    if (endOfFile_ == EndOfFile::Ends || isPipe(STDIN_FILENO)) {
      ended_();
    }
    return;
  }
  split({chunk.data(), static_cast<std::size_t>(count)});
}

void StandardInput::split(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t end = bytes.find('\n');
    // A flood without a line end must not fill the memory.
    pending_.append(bytes.substr(0, end).substr(0, kLongest + 1 - pending_.size()));
    if (end == std::string_view::npos) {
      return;
    }
    line_(std::exchange(pending_, {}));
    bytes.remove_prefix(end + 1);
  }
}

void StandardInput::drain(int milliseconds) {
  pollfd input{STDIN_FILENO, POLLIN, 0};
  while (!over_ && ::poll(&input, 1, milliseconds) > 0) {
    take();
  }
}

}  // namespace firmlane
