#include "record/record_ring.h"

#include <algorithm>

namespace firmlane {

void RecordRing::add(std::string_view line) {
  if (line.size() + 1 > capacity_) {
    ++dropped_;
    return;
  }
  while (size_ + line.size() + 1 > capacity_) {
    dropOldest();
  }
  put(line);
  put("\n");
}

void RecordRing::put(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t at = (first_ + size_) % capacity_;
    const std::size_t count = std::min(bytes.size(), capacity_ - at);
    if (buffer_.size() < at + count) {
      buffer_.resize(at + count);
    }
    std::copy_n(bytes.data(), count, buffer_.begin() + static_cast<std::ptrdiff_t>(at));
    size_ += count;
    bytes.remove_prefix(count);
  }
}

void RecordRing::dropOldest() {
  while (buffer_[first_] != '\n') {
    first_ = (first_ + 1) % capacity_;
    --size_;
  }
  first_ = (first_ + 1) % capacity_;
  --size_;
  ++dropped_;
}

std::string RecordRing::text() const {
  const std::size_t ahead = std::min(size_, capacity_ - first_);
  return size_ == 0 ? std::string() : buffer_.substr(first_, ahead) + buffer_.substr(0, size_ - ahead);
}

}  // namespace firmlane
