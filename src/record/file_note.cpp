#include "record/file_note.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include "record/record_text.h"

namespace firmlane {

namespace fs = std::filesystem;

namespace {
constexpr std::uintmax_t kInFull = 64;
constexpr std::uintmax_t kLargest = std::uintmax_t{4} << 20U;  // reading more would be felt
}  // namespace

std::string fileNote(const std::string& path) {
  const std::string name = inQuotes(fs::path(path).filename().string());
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (!fs::exists(status)) {
    return name + " missing";
  }
  const std::uintmax_t size = fs::is_regular_file(status) ? fs::file_size(path, error) : 0;
  if (!fs::is_regular_file(status) || error) {
    return name + " not a file";
  }
  if (size == 0) {
    return name + " empty";
  }
  std::string note = name + " " + std::to_string(size) + " bytes";
  if (size > kLargest) {
    return note;
  }
  std::ifstream file(path, std::ios::binary);
  const Bytes content(std::istreambuf_iterator<char>(file), {});
  if (content.size() != size) {
    return note + " unreadable";
  }
  return size <= kInFull ? name + ": " + hexText(content) : note + " sum " + sumText(recordSum(content));
}

}  // namespace firmlane
