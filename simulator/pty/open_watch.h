// Who opens a pseudo-terminal, and closes it again: the system keeps count, so that an opening of a millisecond is not missed.
#pragma once

#include <string>
#include <vector>

namespace firmlane::sim {

class OpenWatch {
 public:
  /// From now on, when nobody has it open. Throws Failure when the system does not tell.
  explicit OpenWatch(const std::string& device);
  ~OpenWatch();
  OpenWatch(const OpenWatch&) = delete;
  OpenWatch& operator=(const OpenWatch&) = delete;

  /// What has happened since the last call: true for "open now", false for "closed now".
  std::vector<bool> changes();

 private:
  int descriptor_;
  int open_ = 0;  // how many have it open
};

}  // namespace firmlane::sim
