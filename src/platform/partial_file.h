// A file on its way in: it is written beside its target and takes the name only when it is complete. Whatever ends it earlier
// leaves the old file as it was. All that the program writes is written so.
#pragma once

#include <memory>
#include <string>

#include "platform/disk.h"

namespace firmlane {

class PartialFile {
 public:
  /// What stands behind the target's name until it is complete.
  static constexpr const char* kEnding = ".part";

  /// Starts from an empty file beside `target`. Throws Failure when it cannot be made.
  PartialFile(Disk& disk, std::string target);
  /// Removes what has come, unless it was complete.
  ~PartialFile();
  PartialFile(const PartialFile&) = delete;
  PartialFile& operator=(const PartialFile&) = delete;

  /// Throws Failure, as when the disk is full.
  void write(ByteSpan bytes);
  /// Takes the target's name, in place of a file that has it. When it returns, the new content will be found even if the power
  /// fails at once. Throws Failure.
  void complete();

 private:
  Disk& disk_;
  std::string target_;
  std::string path_;
  std::unique_ptr<DiskFile> file_;
  bool complete_ = false;
};

}  // namespace firmlane
