#include "units/srecords.h"

#include <algorithm>
#include <string>

namespace firmlane::sim {

namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEF";
constexpr std::size_t kDataPerRecord = 32;
constexpr std::size_t kShortAddressLimit = 0x10000;

std::optional<std::uint8_t> hexValue(std::string_view pair) {
  const std::size_t high = kHexDigits.find(pair[0]);
  const std::size_t low = kHexDigits.find(pair[1]);
  if (high == std::string_view::npos || low == std::string_view::npos) {
    return std::nullopt;
  }
  return static_cast<std::uint8_t>(high * 16 + low);
}

/// Address bytes of a record type; 0 for a type that does not exist.
std::size_t addressSize(char type) {
  switch (type) {
    case '0':
    case '1':
    case '5':
    case '9':
      return 2;
    case '2':
    case '8':
      return 3;
    case '3':
    case '7':
      return 4;
    default:
      return 0;
  }
}

void putHex(Bytes& text, std::uint8_t byte) {
  text.push_back(static_cast<std::uint8_t>(kHexDigits[byte >> 4U]));
  text.push_back(static_cast<std::uint8_t>(kHexDigits[byte & 0x0FU]));
}

void putRecord(Bytes& text, char type, std::size_t address, ByteSpan data) {
  const std::size_t addressBytes = addressSize(type);
  Bytes body = {static_cast<std::uint8_t>(addressBytes + data.size() + 1)};
  for (std::size_t i = addressBytes; i-- > 0;) {
    body.push_back(static_cast<std::uint8_t>(address >> (8 * i)));
  }
  body.insert(body.end(), data.begin(), data.end());
  unsigned sum = 0;
  text.push_back('S');
  text.push_back(static_cast<std::uint8_t>(type));
  for (const std::uint8_t byte : body) {
    sum += byte;
    putHex(text, byte);
  }
  putHex(text, static_cast<std::uint8_t>(~sum));
  text.push_back('\r');
  text.push_back('\n');
}

}  // namespace

std::optional<Record> parseRecord(std::string_view line) {
  if (line.size() < 4 || line.size() % 2 != 0 || line[0] != 'S' || addressSize(line[1]) == 0) {
    return std::nullopt;
  }
  Bytes body;
  unsigned sum = 0;
  for (std::size_t i = 2; i < line.size(); i += 2) {
    const std::optional<std::uint8_t> byte = hexValue(line.substr(i, 2));
    if (!byte) {
      return std::nullopt;
    }
    sum += *byte;
    body.push_back(*byte);
  }
  const std::size_t addressBytes = addressSize(line[1]);
  if (body[0] != body.size() - 1 || body[0] < addressBytes + 1 || (sum & 0xFFU) != 0xFF) {
    return std::nullopt;
  }
  Record record;
  record.type = line[1];
  for (std::size_t i = 1; i <= addressBytes; ++i) {
    record.address = record.address * 256 + body[i];
  }
  record.data.assign(body.begin() + 1 + static_cast<std::ptrdiff_t>(addressBytes), body.end() - 1);
  return record;
}

Bytes writeRecords(ByteSpan code) {
  const bool shortAddress = code.size() <= kShortAddressLimit;
  Bytes text;
  const std::string title = "FIRMWARE";
  putRecord(text, '0', 0, Bytes(title.begin(), title.end()));
  for (std::size_t at = 0; at < code.size(); at += kDataPerRecord) {
    putRecord(text, shortAddress ? '1' : '2', at, code.subspan(at, std::min(kDataPerRecord, code.size() - at)));
  }
  putRecord(text, shortAddress ? '9' : '8', 0, {});
  return text;
}

Bytes writeDigitText(ByteSpan code) {
  Bytes text;
  for (const std::uint8_t byte : code) {
    for (const std::uint8_t nibble : {static_cast<std::uint8_t>(byte >> 4U), static_cast<std::uint8_t>(byte & 0x0FU)}) {
      const int character = static_cast<unsigned char>(kHexDigits[nibble]);
      text.push_back(static_cast<std::uint8_t>('0' + character / 10));
      text.push_back(static_cast<std::uint8_t>('0' + character % 10));
    }
  }
  return text;
}

}  // namespace firmlane::sim
