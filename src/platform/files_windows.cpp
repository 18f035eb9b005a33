#include <algorithm>

#include "platform/failure.h"
#include "platform/files.h"
#include "platform/system_path.h"
#include "platform/win32.h"

namespace firmlane {

namespace {

/// Who reads keeps nobody from putting another file in this one's place.
Handle openForReading(const std::string& path) {
  if (Files::isMissing(path)) {
    throw Failure(failure_number::kFileNotFound, "File not found: " + path);
  }
  const std::wstring name = systemPath(path);
  HANDLE opened = INVALID_HANDLE_VALUE;
  const DWORD attributes = ::GetFileAttributesW(name.c_str());
  const bool isFolder = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  const DWORD error = isFolder ? 0 : patiently([&] {
    opened = ::CreateFileW(name.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                           OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    return opened != INVALID_HANDLE_VALUE;
  });
  if (error != 0) {
    throwSystemError(static_cast<int>(error), path);
  }
  Handle file(opened);
  if (isFolder || ::GetFileType(file.get()) != FILE_TYPE_DISK) {
    throw Failure(failure_number::kPathAccess, "Not a file: " + path);
  }
  return file;
}

std::size_t sizeOf(const Handle& file, const std::string& path) {
  LARGE_INTEGER size{};
  if (::GetFileSizeEx(file.get(), &size) == 0) {
    throwSystemError(static_cast<int>(::GetLastError()), path);
  }
  return static_cast<std::size_t>(size.QuadPart);
}

}  // namespace

/// The system looks names up without regard to case itself.
std::optional<std::string> Files::nameAsStored(const std::filesystem::path& directory, const std::string& name) {
  WIN32_FIND_DATAW found{};
  const std::filesystem::path wanted = systemPath((directory / systemPath(name)).string());
  const HANDLE search = ::FindFirstFileW(wanted.c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) {
    return std::nullopt;
  }
  ::FindClose(search);
  return std::filesystem::path(found.cFileName).string();
}

bool Files::isMissing(const std::string& path) {
  if (::GetFileAttributesW(systemPath(path).c_str()) != INVALID_FILE_ATTRIBUTES) {
    return false;
  }
  const DWORD error = ::GetLastError();
  if (error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND) {
    throwSystemError(static_cast<int>(error), path);
  }
  return true;
}

std::string Files::behindLink(const std::string& path) {
  const std::wstring name = systemPath(path);
  const DWORD attributes = ::GetFileAttributesW(name.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0 || isPlainFile(name)) {
    return path;
  }
  const Handle file(::CreateFileW(name.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  const DWORD size = file.valid() ? ::GetFinalPathNameByHandleW(file.get(), nullptr, 0, 0) : 0;
  std::wstring target(size, L'\0');
  target.resize(size == 0 ? 0 : ::GetFinalPathNameByHandleW(file.get(), target.data(), size, 0));
  if (target.empty()) {
    throwSystemError(static_cast<int>(::GetLastError()), path);
  }
  return std::filesystem::path(target).string();
}

std::int64_t Files::length(const std::string& path) {
  const Handle file = openForReading(path);
  return static_cast<std::int64_t>(sizeOf(file, path));
}

Bytes Files::read(const std::string& path) {
  const Handle file = openForReading(path);
  Bytes content(sizeOf(file, path));
  std::size_t had = 0;
  for (DWORD count = 1; count > 0 && had < content.size(); had += count) {
    constexpr std::size_t kMost = std::size_t{1} << 20U;
    if (::ReadFile(file.get(), content.data() + had, static_cast<DWORD>(std::min(content.size() - had, kMost)), &count,
                   nullptr) == 0) {
      throwSystemError(static_cast<int>(::GetLastError()), path);
    }
  }
  content.resize(had);
  return content;
}

}  // namespace firmlane
