// What every target stands on: a check that libFuzzer notices, and made-up bytes in the pieces in which a line may bring them.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <string>

#include "platform/bytes.h"

namespace firmlane::fuzz {

inline void require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

/// One made-up input. Its first bytes choose among the cases of a target, the rest is what the program gets.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : rest_(data, size) {}

  /// A number from 0 to `count` - 1.
  std::size_t choice(std::size_t count) { return byte() % count; }
  std::uint8_t byte() {
    if (rest_.empty()) {
      return 0;
    }
    const std::uint8_t first = rest_.front();
    rest_ = rest_.subspan(1);
    return first;
  }
  /// At most so many of the next bytes.
  ByteSpan piece(std::size_t most) {
    const ByteSpan piece = rest_.first(std::min(most, rest_.size()));
    rest_ = rest_.subspan(piece.size());
    return piece;
  }
  [[nodiscard]] bool empty() const { return rest_.empty(); }
  [[nodiscard]] std::string text() const { return {rest_.begin(), rest_.end()}; }

 private:
  ByteSpan rest_;
};

}  // namespace firmlane::fuzz
