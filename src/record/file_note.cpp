#include "record/file_note.h"

#include "platform/failure.h"
#include "platform/files.h"
#include "platform/system_path.h"
#include "record/record_text.h"

namespace firmlane {

namespace {
constexpr std::int64_t kInFull = 64;
constexpr std::int64_t kLargest = std::int64_t{4} << 20U;  // reading more would be felt
}  // namespace

std::string fileNote(const std::string& path) {
  const std::string name = inQuotes(systemPath(path).filename().string());
  std::int64_t size = 0;
  try {
    if (Files::isMissing(path)) {
      return name + " missing";
    }
    size = Files::length(path);
  } catch (const Failure&) {
    return name + " not a file";
  }
  if (size == 0) {
    return name + " empty";
  }
  std::string note = name + " " + std::to_string(size) + " bytes";
  if (size > kLargest) {
    return note;
  }
  try {
    const Bytes content = Files::read(path);
    return size <= kInFull ? name + ": " + hexText(content) : note + " sum " + sumText(recordSum(content));
  } catch (const Failure&) {
    return note + " unreadable";
  }
}

}  // namespace firmlane
