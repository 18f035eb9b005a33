#include "platform/files.h"

#include <fcntl.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <optional>
#include <system_error>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

#include "platform/failure.h"

namespace firmlane {

namespace fs = std::filesystem;

namespace {

bool sameButForCase(const std::string& a, const std::string& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](unsigned char x, unsigned char y) { return std::tolower(x) == std::tolower(y); });
}

[[noreturn]] void throwSystemError(int number, const std::string& path) {
  throw Failure(number, std::string(std::strerror(number)) + ": " + path);
}

std::ifstream openForReading(const std::string& path) {
  if (Files::isMissing(path)) {
    throw Failure(failure_number::kFileNotFound, "File not found: " + path);
  }
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (!fs::status_known(status) || !fs::exists(status)) {
    throwSystemError(error ? error.value() : ENOENT, path);
  }
  if (!fs::is_regular_file(status)) {
    throw Failure(failure_number::kPathAccess, "Not a file: " + path);
  }
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    throwSystemError(errno == 0 ? EIO : errno, path);
  }
  return file;
}

template <typename Container>
Container readAll(const std::string& path) {
  std::ifstream file = openForReading(path);
  Container content(std::istreambuf_iterator<char>(file), {});
  if (file.bad()) {
    throwSystemError(EIO, path);
  }
  return content;
}

void writeWhole(const fs::path& path, ByteSpan content) {
  errno = 0;
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  if (file) {
    file.write(reinterpret_cast<const char*>(content.data()), static_cast<std::streamsize>(content.size()));
    file.close();
  }
  if (!file) {
    throwSystemError(errno == 0 ? EIO : errno, path.string());
  }
}

#ifdef _WIN32
bool sync(const fs::path& path) {
  const int file = _wopen(path.c_str(), _O_RDWR | _O_BINARY);
  const bool done = file >= 0 && _commit(file) == 0;
  if (file >= 0) {
    _close(file);
  }
  return done;
}

// The system keeps its directories consistent by itself.
void syncDirectoryOf(const std::string&) {}
#else
bool sync(const fs::path& path) {
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  const bool done = file >= 0 && ::fsync(file) == 0;
  const int error = errno;
  if (file >= 0) {
    ::close(file);
  }
  errno = error;
  return done;
}

// The new name is on the disk only when the directory is. Some file systems refuse this; they have no more to give.
void syncDirectoryOf(const std::string& path) {
  const fs::path directory = fs::path(path).parent_path();
  sync(directory.empty() ? fs::path(".") : directory);
}
#endif

void replaceWhole(const std::string& path, ByteSpan content, bool durably) {
  const fs::path temporary = path + ".part";
  std::error_code error;
  try {
    writeWhole(temporary, content);
    if (durably && !sync(temporary)) {
      throwSystemError(errno, path);
    }
    fs::rename(temporary, path, error);
    if (error) {
      throwSystemError(error.value(), path);
    }
  } catch (const Failure&) {
    fs::remove(temporary, error);
    throw;
  }
}

}  // namespace

std::string Files::programDirectory() const { return directory_.string(); }

std::string Files::path(const std::string& name) const {
  // Where two spellings stand side by side each name means the same one of them: what a download stores is what is sent.
  std::error_code error;
  std::optional<fs::path> found;
  for (fs::directory_iterator entry(directory_, error), end; !error && entry != end; entry.increment(error)) {
    if (sameButForCase(entry->path().filename().string(), name) && (!found || entry->path() < *found)) {
      found = entry->path();
    }
  }
  std::string path = found.value_or(directory_ / name).string();
  recorder_.fileMet(path);
  return path;
}

bool Files::isMissing(const std::string& path) {
  std::error_code error;
  const fs::file_status status = fs::symlink_status(path, error);
  if (error && error != std::errc::no_such_file_or_directory) {
    throwSystemError(error.value(), path);
  }
  return !fs::exists(status);
}

std::int64_t Files::length(const std::string& path) {
  std::ifstream file = openForReading(path);
  file.seekg(0, std::ios::end);
  return static_cast<std::int64_t>(file.tellg());
}

Bytes Files::read(const std::string& path) { return readAll<Bytes>(path); }

std::string Files::readText(const std::string& path) { return readAll<std::string>(path); }

void Files::replace(const std::string& path, ByteSpan content) { replaceWhole(path, content, false); }

void Files::replaceDurably(const std::string& path, ByteSpan content) {
  replaceWhole(path, content, true);
  syncDirectoryOf(path);
}

void Files::replaceText(const std::string& path, const std::string& content) {
  replace(path, {reinterpret_cast<const std::uint8_t*>(content.data()), content.size()});
}

}  // namespace firmlane
