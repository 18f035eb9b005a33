#include "platform/partial_file.h"

#include "platform/failure.h"
#include "platform/system_path.h"

namespace firmlane {

PartialFile::PartialFile(Disk& disk, std::string target)
    : disk_(disk), target_(std::move(target)), path_(target_ + kEnding), file_(disk_.create(path_)) {}

PartialFile::~PartialFile() {
  if (complete_) {
    return;
  }
  file_.reset();
  try {
    disk_.remove(path_);
  } catch (const Failure&) {
    return;  // what made the file fail is being told; the next one takes this one's place
  }
}

void PartialFile::write(ByteSpan bytes) { file_->write(bytes); }

void PartialFile::complete() {
  // The content first: a name that survives a power failure must not lead to a file that does not.
  file_->sync();
  file_->close();
  disk_.rename(path_, target_);
  complete_ = true;
  disk_.syncDirectory(systemPath(target_).parent_path().string());
}

}  // namespace firmlane
