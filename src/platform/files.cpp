#include "platform/files.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <optional>
#include <system_error>

#include "platform/failure.h"
#include "platform/partial_file.h"

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

/// The stream tells what it meets by its state; its buffer alone would throw what nobody here catches.
std::string readAll(const std::string& path) {
  std::ifstream file = openForReading(path);
  std::string content;
  std::array<char, 65536> part{};
  while (file.read(part.data(), part.size()) || file.gcount() > 0) {
    content.append(part.data(), static_cast<std::size_t>(file.gcount()));
  }
  if (file.bad()) {
    throwSystemError(EIO, path);
  }
  return content;
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

Bytes Files::read(const std::string& path) {
  const std::string content = readAll(path);
  return {content.begin(), content.end()};
}

std::string Files::readText(const std::string& path) { return readAll(path); }

void Files::replace(const std::string& path, ByteSpan content) const {
  PartialFile file(*disk_, path);
  file.write(content);
  file.complete();
}

void Files::replaceText(const std::string& path, const std::string& content) const {
  replace(path, {reinterpret_cast<const std::uint8_t*>(content.data()), content.size()});
}

}  // namespace firmlane
