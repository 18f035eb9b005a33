#include "platform/qt/standard_input.h"

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

StandardInput::StandardInput(std::function<void(const std::string&)> line, std::function<void()> ended, EndOfFile endOfFile)
    : line_(std::move(line)), ended_(std::move(ended)), endOfFile_(endOfFile), notifier_(STDIN_FILENO, QSocketNotifier::Read) {
  connect(&notifier_, &QSocketNotifier::activated, this, &StandardInput::take);
}

void StandardInput::take() {
  std::array<char, 4096> chunk{};
  const ssize_t count = read(STDIN_FILENO, chunk.data(), chunk.size());
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
    return;
  }
  if (count <= 0) {
    notifier_.setEnabled(false);
    if (!pending_.empty()) {
      line_(std::exchange(pending_, {}));  // a last line without its end
    }
    if (endOfFile_ == EndOfFile::Ends || isPipe(STDIN_FILENO)) {
      ended_();
    }
    return;
  }
  pending_.append(chunk.data(), static_cast<std::size_t>(count));
  for (std::size_t end = 0; (end = pending_.find('\n')) != std::string::npos;) {
    const std::string line = pending_.substr(0, end);
    pending_.erase(0, end + 1);
    line_(line);
  }
}

}  // namespace firmlane
