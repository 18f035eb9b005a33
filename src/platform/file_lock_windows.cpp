#include "platform/file_lock.h"

#include "platform/disk.h"
#include "platform/system_path.h"
#include "platform/win32.h"

namespace firmlane {

std::optional<FileLock> FileLock::tryTake(const std::string& path) {
  // It goes to no program that is started meanwhile, and nobody can remove the file.
  Handle file(::CreateFileW(systemPath(path).c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                            OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
  if (!file.valid() && ::GetLastError() == ERROR_SHARING_VIOLATION) {
    return std::nullopt;
  }
  OVERLAPPED first{};
  if (file.valid() && ::LockFileEx(file.get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &first) != 0) {
    FileLock lock(reinterpret_cast<std::intptr_t>(file.get()));
    static_cast<void>(file.release());
    return lock;
  }
  const DWORD error = ::GetLastError();
  if (file.valid() && (error == ERROR_LOCK_VIOLATION || error == ERROR_IO_PENDING)) {
    return std::nullopt;
  }
  throwSystemError(static_cast<int>(error), path);
}

FileLock::~FileLock() {
  if (file_ >= 0) {
    const Handle file(reinterpret_cast<HANDLE>(file_));
    OVERLAPPED first{};
    ::UnlockFileEx(file.get(), 0, 1, 0, &first);  // else the system does it in its own time
  }
}

}  // namespace firmlane
