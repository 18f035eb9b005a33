// Contents that a record holds only by length and sum: firmware, mostly, of which whoever plays the record has a copy.
#pragma once

#include <filesystem>
#include <map>
#include <utility>

#include "replay/recording.h"

namespace firmlane::sim {

class Shelf {
 public:
  void add(const Bytes& content);
  /// Every file of a directory; what cannot be read is left out.
  void addDirectory(const std::filesystem::path& directory);
  /// The bytes themselves when they are known in full, else what on the shelf has their length and sum; null for none.
  [[nodiscard]] const Bytes* find(const RecordedBytes& bytes) const;

 private:
  std::map<std::pair<std::size_t, RecordSum>, Bytes> contents_;
};

}  // namespace firmlane::sim
