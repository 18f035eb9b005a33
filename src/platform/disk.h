// The disk as whoever writes files sees it: a handful of operations that can each fail, none more clever than the system's own.
// What reads files does without it. Tests put one in its place that fails, fills up or loses power.
#pragma once

#include <memory>
#include <string>

#include "platform/bytes.h"

namespace firmlane {

/// A new file that is being written. It closes with its owner, but what that has to tell is then lost.
class DiskFile {
 public:
  virtual ~DiskFile() = default;

  // All throw Failure, as when the disk is full.
  virtual void write(ByteSpan bytes) = 0;
  /// When it returns, what was written survives a power failure; the file's name need not.
  virtual void sync() = 0;
  /// What was taken in and could not be kept may only show here.
  virtual void close() = 0;
};

class Disk {
 public:
  virtual ~Disk() = default;

  // All take full paths and throw Failure.
  /// Makes an empty file, in place of a plain file of that name that a broken-off program has left. What else has the name, such
  /// as a link, a pipe or a directory, is neither written through nor touched, and fails.
  [[nodiscard]] virtual std::unique_ptr<DiskFile> create(const std::string& path) = 0;
  /// Takes the place of a file that has the new name. A power failure leaves the one or the other.
  virtual void rename(const std::string& from, const std::string& to) = 0;
  /// Removes a plain file; anything else, and nothing, stays as it is.
  virtual void remove(const std::string& path) = 0;
  /// When it returns, the names given and taken in the directory survive a power failure.
  virtual void syncDirectory(const std::string& path) = 0;
};

/// The computer's own.
class RealDisk : public Disk {
 public:
  [[nodiscard]] std::unique_ptr<DiskFile> create(const std::string& path) override;
  void rename(const std::string& from, const std::string& to) override;
  void remove(const std::string& path) override;
  void syncDirectory(const std::string& path) override;
};

/// Throws a system's error as the user gets to see it.
[[noreturn]] void throwSystemError(int number, const std::string& path);

}  // namespace firmlane
