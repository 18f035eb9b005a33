// An S-record file as decimal text, two digits for each of its characters, read by position. It takes only the shape that the
// conversion is made for: a file that strays from it fails instead of giving a wrong image.
#pragma once

#include <string>
#include <string_view>

namespace firmlane {

class SRecordReader {
 public:
  /// `digits` outlives the reader; `name` stands in its failures.
  SRecordReader(std::string_view digits, std::string name) : digits_(digits), name_(std::move(name)) {}

  /// Count of the record at `pos`: bytes of address, data and checksum. Throws Failure unless a record stands there, whole, with
  /// its line end. Positions count digits from 1.
  [[nodiscard]] int recordCount(std::size_t pos) const;
  /// Type character of the record at `pos`. Throws Failure when none begins there.
  [[nodiscard]] char recordType(std::size_t pos) const;
  /// Digits of the data of the record at `pos`. Throws Failure when its count does not cover address and checksum.
  [[nodiscard]] std::string_view recordData(std::size_t pos) const;
  /// Where the record behind the one at `pos` begins.
  [[nodiscard]] std::size_t next(std::size_t pos) const;
  /// Whether a record follows the one at `pos`, wherever.
  [[nodiscard]] bool othersBehind(std::size_t pos) const;

 private:
  [[nodiscard]] char at(std::size_t pos) const;
  [[noreturn]] void refuse(const std::string& why, std::size_t pos) const;

  std::string_view digits_;
  std::string name_;
};

}  // namespace firmlane
