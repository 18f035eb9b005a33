#include "record/byte_stream.h"

#include <algorithm>

namespace firmlane {

void ByteStream::add(ByteSpan bytes, Micros now) {
  if (size_ == 0) {
    firstAt_ = now;
  }
  lastAt_ = now;
  size_ += bytes.size();
  sum_ = recordSum(bytes, sum_);
  const std::size_t room = inFull_ - std::min(inFull_, first_.size());
  first_.insert(first_.end(), bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(std::min(room, bytes.size())));
  const ByteSpan end = bytes.last(std::min(kEnds, bytes.size()));
  last_.insert(last_.end(), end.begin(), end.end());
  last_.erase(last_.begin(), last_.end() - static_cast<std::ptrdiff_t>(std::min(kEnds, last_.size())));
}

std::string ByteStream::text(std::size_t inFull) const {
  if (size_ <= std::min(inFull, inFull_)) {
    return hexText(first_);
  }
  const ByteSpan head = ByteSpan(first_).first(std::min(kEnds, first_.size()));
  return bytesInShort(size_, head, last_, sum_) + " in " + secondsText(lastAt_ - firstAt_);
}

}  // namespace firmlane
