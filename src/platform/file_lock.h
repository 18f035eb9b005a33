// Keeps every other program that does the same out of a shared file for a moment, on this computer or on another one that shares
// the directory. The system takes the lock back when its holder ends, however that comes about, so none is ever left behind.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace firmlane {

class FileLock {
 public:
  /// Tries once to take the lock that the empty file `path` stands for, and makes that file if need be; it stays. Returns nothing
  /// while somebody else has the lock. Throws Failure when the file cannot be made, or the file system has no locks.
  static std::optional<FileLock> tryTake(const std::string& path);

  FileLock(FileLock&& other) noexcept : file_(std::exchange(other.file_, -1)) {}
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  FileLock& operator=(FileLock&&) = delete;
  ~FileLock();

 private:
  explicit FileLock(std::intptr_t file) : file_(file) {}

  std::intptr_t file_;  // the system's handle, -1 for none
};

}  // namespace firmlane
