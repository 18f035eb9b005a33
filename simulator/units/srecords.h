// Text forms of images: S-records, written and read a record at a time, and the digit text of a wireless front panel.
#pragma once

#include <optional>
#include <string_view>

#include "platform/bytes.h"

namespace firmlane::sim {

struct Record {
  char type = '0';  // behind the "S"
  std::uint32_t address = 0;
  Bytes data;
  [[nodiscard]] bool isData() const { return type >= '1' && type <= '3'; }
  [[nodiscard]] bool isEnd() const { return type >= '7' && type <= '9'; }
};

/// Reads one line without its line end. Nothing when its syntax, its count or its checksum is wrong.
std::optional<Record> parseRecord(std::string_view line);

/// A file of an S0 record, data records from address 0 up and an end record, in upper case with CR LF line ends. Code beyond
/// 64 KB takes records with a longer address.
Bytes writeRecords(ByteSpan code);

/// Four decimal digits for each code byte: the character codes of its two hexadecimal digits.
Bytes writeDigitText(ByteSpan code);

}  // namespace firmlane::sim
