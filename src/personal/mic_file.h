// The text of micmodels.lmm: 15 blocks of a model line and five filter lines, read one line at a time into the six-byte groups
// that a receiver takes. Knows nothing of the line.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "state/file_names.h"

namespace firmlane {

/// Six bytes as they go to the unit, without a frame.
using MicGroup = std::array<std::uint8_t, 6>;

class MicFile {
 public:
  static constexpr const char* kName = file_name::kMicModels;
  static constexpr int kModels = 15;
  static constexpr int kFilterLines = 5;

  struct ModelLine {
    MicGroup name;
    MicGroup filter;
  };

  /// Throws Failure when the text is longer than 32,767 bytes.
  explicit MicFile(std::string text);

  // Each reads the next line. They throw Failure, with the line's number and the name of the field, for a field that is missing,
  // not a number, or out of range.

  ModelLine modelLine();
  MicGroup filterLine();

  /// How much of the text has been read, in percent, rounded down.
  [[nodiscard]] int percent() const;

 private:
  void beginLine();
  std::string field(const char* name, char end);
  double decimal(const char* name, char end);
  int integer(const char* name, char end, int lowest, int highest);
  MicGroup filter();
  [[noreturn]] void fail(const char* name, int number, const std::string& what) const;

  std::string text_;
  std::size_t position_ = 0;
  int line_ = 0;
};

}  // namespace firmlane
