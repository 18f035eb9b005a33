#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <fstream>
#include <system_error>

#include "platform/failure.h"
#include "platform/files.h"

namespace firmlane {

namespace fs = std::filesystem;

namespace {

bool sameButForCase(const std::string& a, const std::string& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](unsigned char x, unsigned char y) { return std::tolower(x) == std::tolower(y); });
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
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    throwSystemError(errno, path);
  }
  return file;
}

}  // namespace

std::optional<std::string> Files::nameAsStored(const fs::path& directory, const std::string& name) {
  // Where two spellings stand side by side each name means the same one of them: what a download stores is what is sent.
  std::error_code error;
  std::optional<std::string> found;
  for (fs::directory_iterator entry(directory, error), end; !error && entry != end; entry.increment(error)) {
    const std::string stored = entry->path().filename().string();
    if (sameButForCase(stored, name) && (!found || stored < *found)) {
      found = stored;
    }
  }
  return found;
}

bool Files::isMissing(const std::string& path) {
  std::error_code error;
  const fs::file_status status = fs::symlink_status(path, error);
  if (error && error != std::errc::no_such_file_or_directory) {
    throwSystemError(error.value(), path);
  }
  return !fs::exists(status);
}

std::string Files::behindLink(const std::string& path) {
  std::error_code error;
  if (!fs::is_symlink(path, error)) {
    return path;
  }
  const fs::path target = fs::canonical(path, error);
  if (error) {
    throw Failure(error.value(), path + " is a link to a file that cannot be reached: " + error.message());
  }
  return target.string();
}

std::int64_t Files::length(const std::string& path) {
  std::ifstream file = openForReading(path);
  file.seekg(0, std::ios::end);
  return static_cast<std::int64_t>(file.tellg());
}

/// The stream tells what it meets by its state; its buffer alone would throw what nobody here catches.
Bytes Files::read(const std::string& path) {
  std::ifstream file = openForReading(path);
  Bytes content;
  std::array<char, 65536> part{};
  while (file.read(part.data(), part.size()) || file.gcount() > 0) {
    content.insert(content.end(), part.data(), part.data() + file.gcount());
  }
  if (file.bad()) {
    throwSystemError(EIO, path);
  }
  return content;
}

}  // namespace firmlane
