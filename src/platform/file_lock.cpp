#include "platform/file_lock.h"

#include <fcntl.h>

#include <cerrno>
#include <cstring>

#include "platform/failure.h"

#ifdef _WIN32
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include <filesystem>
#else
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#endif

namespace firmlane {

namespace {

[[noreturn]] void fail(const std::string& path) {
  const int number = errno;
  throw Failure(number, "The lock " + path + " cannot be taken: " + std::strerror(number));
}

#ifndef _WIN32
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
#endif

}  // namespace

#ifdef _WIN32
std::optional<FileLock> FileLock::tryTake(const std::string& path) {
  int file = -1;
  errno = ::_wsopen_s(&file, std::filesystem::path(path).c_str(), _O_RDWR | _O_CREAT | _O_BINARY | _O_NOINHERIT, _SH_DENYRW,
                      _S_IREAD | _S_IWRITE);
  if (file >= 0) {
    return FileLock(file);
  }
  if (errno == EACCES && std::filesystem::exists(path)) {
    return std::nullopt;
  }
  fail(path);
}

FileLock::~FileLock() {
  if (file_ >= 0) {
    ::_close(file_);
  }
}
#else
std::optional<FileLock> FileLock::tryTake(const std::string& path) {
  FileLock lock(openLockFile(path));
  if (lock.file_ < 0) {
    fail(path);
  }
  struct flock whole {};
  whole.l_type = F_WRLCK;
  whole.l_whence = SEEK_SET;
  if (::fcntl(lock.file_, kSetLock, &whole) == 0) {
    return lock;
  }
  if (errno == EAGAIN || errno == EACCES) {
    return std::nullopt;
  }
  fail(path);
}

FileLock::~FileLock() {
  if (file_ >= 0) {
    ::close(file_);
  }
}
#endif

}  // namespace firmlane
