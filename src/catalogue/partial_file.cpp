#include "catalogue/partial_file.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "platform/failure.h"

namespace firmlane {

namespace {
Failure cannotWrite(int error, const std::string& path) {
  const int number = error == 0 ? EIO : error;
  return {number, std::string(std::strerror(number)) + ": " + path};
}
}  // namespace

PartialFile::PartialFile(std::string target) : target_(std::move(target)), path_(target_ + ".part") {
  errno = 0;
  file_.open(path_, std::ios::binary | std::ios::trunc);
  throwIfBad();
}

PartialFile::~PartialFile() {
  if (!complete_) {
    file_.close();
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }
}

void PartialFile::write(ByteSpan bytes) {
  errno = 0;
  file_.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  throwIfBad();
}

void PartialFile::complete() {
  errno = 0;
  file_.close();
  throwIfBad();
  std::error_code error;
  std::filesystem::rename(path_, target_, error);
  if (error) {
    throw cannotWrite(error.value(), target_);
  }
  complete_ = true;
}

void PartialFile::throwIfBad() {
  if (!file_) {
    throw cannotWrite(errno, target_);
  }
}

}  // namespace firmlane
