#include "platform/win32.h"

namespace firmlane {

namespace {
constexpr int kTries = 25;
constexpr DWORD kBetweenTries = 20;  // ms

bool mayPass(DWORD error) {
  return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION || error == ERROR_ACCESS_DENIED ||
         error == ERROR_USER_MAPPED_FILE;
}
}  // namespace

DWORD patiently(const std::function<bool()>& work) {
  for (int tries = 1;; ++tries) {
    if (work()) {
      return 0;
    }
    const DWORD error = ::GetLastError();
    if (!mayPass(error) || tries == kTries) {
      return error == 0 ? ERROR_GEN_FAILURE : error;
    }
    ::Sleep(kBetweenTries);
  }
}

bool isPlainFile(const std::wstring& path) {
  WIN32_FIND_DATAW found{};
  const HANDLE search = ::FindFirstFileW(path.c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) {
    return false;
  }
  ::FindClose(search);
  const bool link = (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 && IsReparseTagNameSurrogate(found.dwReserved0);
  return !link && (found.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE)) == 0;
}

}  // namespace firmlane
