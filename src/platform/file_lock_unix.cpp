#include "platform/file_lock.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "platform/failure.h"

namespace firmlane {

namespace {

[[noreturn]] void fail(const std::string& path) {
  const int number = errno;
  throw Failure(number, "The lock " + path + " cannot be taken: " + std::strerror(number));
}

/// Whoever may write to the directory may take the lock, whatever the first user's mask was.
void shareWithTheDirectory(int file, const std::string& path) {
  struct stat directory {};
  const std::string parent = std::filesystem::path(path).parent_path().string();
  if (::stat(parent.empty() ? "." : parent.c_str(), &directory) == 0) {
    // Where that is refused the lock still serves this user.
    static_cast<void>(::fchmod(file, directory.st_mode & (S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH)));
  }
}

int openLockFile(const std::string& path) {
  // Some systems refuse to make a file anew that another user has made, so it is made only when it is not there.
  for (;;) {
    int file = ::open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW);
    if (file >= 0 || errno != ENOENT) {
      return file;
    }
    file = ::open(path.c_str(), O_RDWR | O_CLOEXEC | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR);
    if (file >= 0) {
      shareWithTheDirectory(file, path);
    }
    if (file >= 0 || errno != EEXIST) {
      return file;
    }
  }
}

// A lock of the open file where the system has it: two parts of one program exclude each other too.
#ifdef F_OFD_SETLK
constexpr int kSetLock = F_OFD_SETLK;
#else
constexpr int kSetLock = F_SETLK;
#endif

}  // namespace

std::optional<FileLock> FileLock::tryTake(const std::string& path) {
  FileLock lock(openLockFile(path));
  if (lock.file_ < 0) {
    fail(path);
  }
  struct flock whole {};
  whole.l_type = F_WRLCK;
  whole.l_whence = SEEK_SET;
  if (::fcntl(static_cast<int>(lock.file_), kSetLock, &whole) == 0) {
    return lock;
  }
  if (errno == EAGAIN || errno == EACCES) {
    return std::nullopt;
  }
  fail(path);
}

FileLock::~FileLock() {
  if (file_ >= 0) {
    ::close(static_cast<int>(file_));
  }
}

}  // namespace firmlane
