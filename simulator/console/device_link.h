// The name under which a program finds the simulator's serial device.
#pragma once

#include <filesystem>
#include <string>

namespace firmlane::sim {

/// A symbolic link that stands as long as the simulator runs.
class DeviceLink {
 public:
  DeviceLink(const std::string& path, const std::string& target) : path_(path) {
    if (path_.empty()) {
      return;
    }
    if (std::filesystem::is_symlink(path_)) {
      std::filesystem::remove(path_);
    }
    std::filesystem::create_symlink(target, path_);
  }
  ~DeviceLink() {
    std::error_code error;
    if (!path_.empty()) {
      std::filesystem::remove(path_, error);
    }
  }
  DeviceLink(const DeviceLink&) = delete;
  DeviceLink& operator=(const DeviceLink&) = delete;

 private:
  std::string path_;
};

}  // namespace firmlane::sim
