#include "replay/shelf.h"

#include "platform/files.h"
#include "record/record_text.h"

namespace firmlane::sim {

void Shelf::add(const Bytes& content) { contents_[{content.size(), recordSum(content)}] = content; }

void Shelf::addDirectory(const std::filesystem::path& directory) {
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(directory, error)) {
    try {
      add(Files::read(entry.path().string()));
    } catch (const Failure&) {
      continue;  // not a file, or not ours to read
    }
  }
}

const Bytes* Shelf::find(const RecordedBytes& bytes) const {
  if (bytes.inFull) {
    return &bytes.first;
  }
  const auto found = contents_.find({bytes.size, bytes.sum});
  return found == contents_.end() ? nullptr : &found->second;
}

}  // namespace firmlane::sim
