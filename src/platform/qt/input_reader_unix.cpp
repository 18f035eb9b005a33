#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <array>
#include <cerrno>

#include "platform/qt/input_reader.h"
#include "platform/qt/standard_input.h"

namespace firmlane {

void holdStandardStreams() {
  int descriptor = 0;
  do {
    descriptor = ::open("/dev/null", O_RDWR);  // takes the lowest number that is free
  } while (descriptor >= 0 && descriptor <= STDERR_FILENO);
  ::close(descriptor);
}

class InputReader::Half {
 public:
  explicit Half(std::function<void(std::string_view)> take)
      : take_(std::move(take)), notifier_(STDIN_FILENO, QSocketNotifier::Read) {
    QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] { read(); });
  }

  void drain(int milliseconds) {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    while (!over_ && ::poll(&input, 1, milliseconds) > 0) {
      read();
    }
  }

 private:
  void read() {
    std::array<char, 16384> chunk{};
    const ssize_t count = ::read(STDIN_FILENO, chunk.data(), chunk.size());
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
      return;
    }
    if (count <= 0) {
      over_ = true;
      notifier_.setEnabled(false);
    }
    take_({chunk.data(), count > 0 ? static_cast<std::size_t>(count) : 0});
  }

  std::function<void(std::string_view)> take_;
  bool over_ = false;
  QSocketNotifier notifier_;
};

InputReader::InputReader(std::function<void(std::string_view)> take) : half_(std::make_unique<Half>(std::move(take))) {}

InputReader::~InputReader() = default;

void InputReader::drain(int milliseconds) { half_->drain(milliseconds); }

bool InputReader::isPipe() {
  struct stat status {};
  return ::fstat(STDIN_FILENO, &status) == 0 && (S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode));
}

}  // namespace firmlane
