#include "pty/open_watch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "platform/failure.h"

namespace firmlane::sim {

OpenWatch::OpenWatch(const std::string& device) : descriptor_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
  if (descriptor_ < 0 || inotify_add_watch(descriptor_, device.c_str(), IN_OPEN | IN_CLOSE) < 0) {
    const int error = errno;
    if (descriptor_ >= 0) {
      close(descriptor_);
    }
    throw Failure(error, "Cannot watch " + device + ": " + std::strerror(error));
  }
}

OpenWatch::~OpenWatch() { close(descriptor_); }

std::vector<bool> OpenWatch::changes() {
  std::vector<bool> changes;
  alignas(inotify_event) std::array<char, 4096> events{};
  for (ssize_t size = 0; (size = read(descriptor_, events.data(), events.size())) > 0;) {
    for (ssize_t at = 0; at < size;) {
      inotify_event event{};
      std::memcpy(&event, events.data() + at, sizeof event);
      at += static_cast<ssize_t>(sizeof event + event.len);
      if ((event.mask & IN_OPEN) != 0 && open_++ == 0) {
        changes.push_back(true);
      }
      if ((event.mask & IN_CLOSE) != 0 && open_ > 0 && --open_ == 0) {
        changes.push_back(false);
      }
    }
  }
  return changes;
}

}  // namespace firmlane::sim
