#include "platform/disk.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/failure.h"

namespace firmlane {

namespace fs = std::filesystem;

namespace {

int openNew(const std::string& path) {
  constexpr mode_t kAsTheUserWants = 0666;  // less what the user's mask takes away
  return ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kAsTheUserWants);
}

class RealFile : public DiskFile {
 public:
  RealFile(int file, std::string path) : file_(file), path_(std::move(path)) {}
  ~RealFile() override {
    if (file_ >= 0) {
      ::close(file_);
    }
  }
  RealFile(const RealFile&) = delete;
  RealFile& operator=(const RealFile&) = delete;

  void write(ByteSpan bytes) override {
    while (!bytes.empty()) {
      const ssize_t written = ::write(file_, bytes.data(), bytes.size());
      if (written < 0 && errno == EINTR) {
        continue;
      }
      throwIf(written <= 0);
      bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
  }
  void sync() override { throwIf(::fsync(file_) != 0); }
  void close() override { throwIf(::close(std::exchange(file_, -1)) != 0); }

 private:
  void throwIf(bool failed) const {
    if (failed) {
      throwSystemError(errno, path_);
    }
  }

  int file_;
  std::string path_;
};

bool isPlainFile(const std::string& path) {
  std::error_code error;
  return fs::is_regular_file(fs::symlink_status(path, error));
}

}  // namespace

void throwSystemError(int number, const std::string& path) {
  const int known = number == 0 ? EIO : number;
  throw Failure(known, std::string(std::strerror(known)) + ": " + path);
}

std::unique_ptr<DiskFile> RealDisk::create(const std::string& path) {
  int file = openNew(path);
  if (file < 0 && errno == EEXIST) {
    if (!isPlainFile(path)) {
      throw Failure(failure_number::kPathAccess, "Something else has the name of a file that is to be made: " + path);
    }
    remove(path);
    file = openNew(path);
  }
  if (file < 0) {
    throwSystemError(errno, path);
  }
  return std::make_unique<RealFile>(file, path);
}

void RealDisk::rename(const std::string& from, const std::string& to) {
  std::error_code error;
  fs::rename(from, to, error);
  if (error) {
    throwSystemError(error.value(), to);
  }
}

void RealDisk::remove(const std::string& path) {
  std::error_code error;
  if (isPlainFile(path) && !fs::remove(path, error) && error) {
    throwSystemError(error.value(), path);
  }
}

void RealDisk::syncDirectory(const std::string& path) {
  const int directory = ::open(path.empty() ? "." : path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (directory < 0) {
    return;  // one that may be written to and not read
  }
  const int result = ::fsync(directory);
  const int error = errno;
  ::close(directory);
  // Some file systems refuse this; they have no more to give. A disk that fails is another matter.
  if (result != 0 && error == EIO) {
    throwSystemError(error, path);
  }
}

}  // namespace firmlane
