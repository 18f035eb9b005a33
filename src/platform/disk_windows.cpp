#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "platform/disk.h"
#include "platform/failure.h"
#include "platform/system_path.h"
#include "platform/win32.h"

namespace firmlane {

namespace {

class RealFile : public DiskFile {
 public:
  RealFile(Handle file, std::string path) : file_(std::move(file)), path_(std::move(path)) {}

  void write(ByteSpan bytes) override {
    constexpr std::size_t kMost = std::size_t{1} << 20U;
    while (!bytes.empty()) {
      DWORD written = 0;
      throwUnless(::WriteFile(file_.get(), bytes.data(), static_cast<DWORD>(std::min(bytes.size(), kMost)), &written, nullptr) !=
                  0);
      throwUnless(written > 0);
      bytes = bytes.subspan(written);
    }
  }
  void sync() override { throwUnless(::FlushFileBuffers(file_.get()) != 0); }
  void close() override { throwUnless(file_.close()); }

 private:
  void throwUnless(bool done) const {
    if (!done) {
      throwSystemError(static_cast<int>(::GetLastError()), path_);
    }
  }

  Handle file_;
  std::string path_;
};

/// Who reads such a file meanwhile does no harm; who has it open must not be written to.
Handle makeNew(const std::wstring& path, DWORD& error) {
  HANDLE file = INVALID_HANDLE_VALUE;
  error = patiently([&] {
    file = ::CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, CREATE_NEW,
                         FILE_ATTRIBUTE_NORMAL, nullptr);
    return file != INVALID_HANDLE_VALUE;
  });
  return Handle(file);
}

/// Files that were copied from a CD may not be written to, which elsewhere keeps nobody from putting another in their place.
void allowToReplace(const std::wstring& path) {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0 && isPlainFile(path)) {
    ::SetFileAttributesW(path.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
  }
}

/// What the system's own words, which are in the user's language, would not say plainly enough.
const char* plainWords(DWORD error) {
  constexpr std::array<std::pair<DWORD, const char*>, 12> kWords = {{
      {ERROR_FILE_NOT_FOUND, "File not found"},
      {ERROR_PATH_NOT_FOUND, "There is no such folder"},
      {ERROR_ACCESS_DENIED, "Permission denied"},
      {ERROR_WRITE_PROTECT, "The disk is write-protected"},
      {ERROR_NOT_READY, "The drive is not ready"},
      {ERROR_SHARING_VIOLATION, "Another program has the file open"},
      {ERROR_LOCK_VIOLATION, "Another program has the file locked"},
      {ERROR_HANDLE_DISK_FULL, "No space left on the disk"},
      {ERROR_DISK_FULL, "No space left on the disk"},
      {ERROR_BAD_NET_NAME, "The network folder cannot be reached"},
      {ERROR_INVALID_NAME, "This cannot be the name of a file"},
      {ERROR_FILENAME_EXCED_RANGE, "The name is too long"},
  }};
  const auto* const found =
      std::find_if(kWords.begin(), kWords.end(), [error](const auto& known) { return known.first == error; });
  return found == kWords.end() ? nullptr : found->second;
}

}  // namespace

void throwSystemError(int number, const std::string& path) {
  // The system's number for a path that the network does not know means a missing file here, and one would be made anew.
  const auto error = static_cast<DWORD>(number == 0                   ? ERROR_GEN_FAILURE
                                        : number == ERROR_BAD_NETPATH ? ERROR_BAD_NET_NAME
                                                                      : number);
  const char* words = plainWords(error);
  throw Failure(static_cast<int>(error),
                (words != nullptr ? words : "Windows reports error " + std::to_string(error)) + ": " + path);
}

std::unique_ptr<DiskFile> RealDisk::create(const std::string& path) {
  const std::wstring name = systemPath(path);
  DWORD error = 0;
  Handle file = makeNew(name, error);
  if (!file.valid() && ::GetFileAttributesW(name.c_str()) != INVALID_FILE_ATTRIBUTES) {
    if (!isPlainFile(name)) {
      throw Failure(failure_number::kPathAccess, "Something else has the name of a file that is to be made: " + path);
    }
    remove(path);
    file = makeNew(name, error);
  }
  if (!file.valid()) {
    throwSystemError(static_cast<int>(error), path);
  }
  return std::make_unique<RealFile>(std::move(file), path);
}

void RealDisk::rename(const std::string& from, const std::string& to) {
  const std::wstring source = systemPath(from);
  const std::wstring target = systemPath(to);
  allowToReplace(target);
  const DWORD error = patiently(
      [&] { return ::MoveFileExW(source.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0; });
  if (error != 0) {
    throwSystemError(static_cast<int>(error), to);
  }
}

void RealDisk::remove(const std::string& path) {
  const std::wstring name = systemPath(path);
  if (!isPlainFile(name)) {
    return;
  }
  allowToReplace(name);
  const DWORD error = patiently([&] { return ::DeleteFileW(name.c_str()) != 0; });
  if (error != 0 && error != ERROR_FILE_NOT_FOUND) {
    throwSystemError(static_cast<int>(error), path);
  }
}

// The system keeps its directories consistent by itself, and a name is taken with MOVEFILE_WRITE_THROUGH.
void RealDisk::syncDirectory(const std::string& /*path*/) {}

}  // namespace firmlane
