#include "platform/files.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <optional>
#include <system_error>

#include "platform/failure.h"

namespace firmlane {

namespace fs = std::filesystem;

namespace {

bool sameButForCase(const std::string& a, const std::string& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](unsigned char x, unsigned char y) { return std::tolower(x) == std::tolower(y); });
}

[[noreturn]] void throwSystemError(int number, const std::string& path) {
  if (number == ENOENT) {
    throw Failure(failure_number::kFileNotFound, "File not found: " + path);
  }
  throw Failure(number, std::string(std::strerror(number)) + ": " + path);
}

std::ifstream openForReading(const std::string& path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (!fs::exists(status)) {
    throwSystemError(ENOENT, path);
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

}  // namespace

std::string Files::programDirectory() const { return directory_.string(); }

std::string Files::path(const std::string& name) const {
  const fs::path exact = directory_ / name;
  std::error_code error;
  if (fs::exists(exact, error)) {
    return exact.string();
  }
  std::optional<fs::path> found;
  for (fs::directory_iterator entry(directory_, error), end; !error && entry != end; entry.increment(error)) {
    if (sameButForCase(entry->path().filename().string(), name) && (!found || entry->path() < *found)) {
      found = entry->path();
    }
  }
  return found.value_or(exact).string();
}

std::int64_t Files::length(const std::string& path) {
  std::ifstream file = openForReading(path);
  file.seekg(0, std::ios::end);
  return static_cast<std::int64_t>(file.tellg());
}

Bytes Files::read(const std::string& path) { return readAll<Bytes>(path); }

std::string Files::readText(const std::string& path) { return readAll<std::string>(path); }

void Files::replace(const std::string& path, ByteSpan content) {
  const fs::path temporary = path + ".part";
  std::error_code error;
  try {
    writeWhole(temporary, content);
    fs::rename(temporary, path, error);
    if (error) {
      throwSystemError(error.value(), path);
    }
  } catch (const Failure&) {
    fs::remove(temporary, error);
    throw;
  }
}

void Files::replaceText(const std::string& path, const std::string& content) {
  replace(path, {reinterpret_cast<const std::uint8_t*>(content.data()), content.size()});
}

}  // namespace firmlane
