// Bytes that went one way over the line, or a body that came over the web, on their way to one line of the record: a few in full,
// of many the length, the first, the last and a sum.
#pragma once

#include <string>

#include "platform/bytes.h"
#include "platform/clock.h"
#include "record/record_text.h"

namespace firmlane {

class ByteStream {
 public:
  /// Up to so many bytes are kept in full.
  explicit ByteStream(std::size_t inFull) : inFull_(inFull) {}

  void add(ByteSpan bytes, Micros now);
  [[nodiscard]] std::size_t size() const { return size_; }
  [[nodiscard]] Micros lastAt() const { return lastAt_; }
  /// "02 00 1F", or "24000 bytes 02 00 .. 1F 1A sum 0123456789ABCDEF in 12.500000".
  [[nodiscard]] std::string text() const { return text(inFull_); }
  /// As text, with fewer in full.
  [[nodiscard]] std::string text(std::size_t inFull) const;
  /// All of them; nothing known when there were too many.
  [[nodiscard]] const Bytes* whole() const { return size_ <= inFull_ ? &first_ : nullptr; }

  /// How many of the first and of the last bytes stand for many.
  static constexpr std::size_t kEnds = 16;

 private:
  std::size_t inFull_;
  std::size_t size_ = 0;
  Micros firstAt_ = 0;
  Micros lastAt_ = 0;
  Bytes first_;
  Bytes last_;
  RecordSum sum_ = kSumOfNothing;
};

}  // namespace firmlane
