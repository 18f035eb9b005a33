// A file on its way in: it takes its name only when it is complete. Whatever ends it earlier leaves the old file as it was.
#pragma once

#include <fstream>
#include <string>

#include "platform/bytes.h"

namespace firmlane {

class PartialFile {
 public:
  /// Starts from an empty file beside `target`. Throws Failure when it cannot be made.
  explicit PartialFile(std::string target);
  /// Removes what has come, unless it was complete.
  ~PartialFile();
  PartialFile(const PartialFile&) = delete;
  PartialFile& operator=(const PartialFile&) = delete;

  /// Throws Failure, as when the disk is full.
  void write(ByteSpan bytes);
  /// Takes the target's name, in place of a file that has it. Throws Failure.
  void complete();

 private:
  void throwIfBad();

  std::string target_;
  std::string path_;
  std::ofstream file_;
  bool complete_ = false;
};

}  // namespace firmlane
