// The last lines of a text, as many as a fixed number of bytes holds. A new line makes room by pushing out the oldest.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace firmlane {

class RecordRing {
 public:
  /// Holds at most `capacity` bytes, line ends included.
  explicit RecordRing(std::size_t capacity) : capacity_(capacity) {}

  /// A line beyond the capacity is not taken, and counts as pushed out.
  void add(std::string_view line);
  /// All lines, oldest first, each with its end.
  [[nodiscard]] std::string text() const;
  /// How many lines have been pushed out.
  [[nodiscard]] std::size_t dropped() const { return dropped_; }

 private:
  void put(std::string_view bytes);
  void dropOldest();

  std::size_t capacity_;
  std::string buffer_;     // grows up to the capacity, then goes round
  std::size_t first_ = 0;  // where the oldest line begins
  std::size_t size_ = 0;
  std::size_t dropped_ = 0;
};

}  // namespace firmlane
