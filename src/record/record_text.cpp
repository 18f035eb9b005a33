#include "record/record_text.h"

#include <array>
#include <cstdio>

namespace firmlane {

namespace {

constexpr std::size_t kShortestRun = 4;
constexpr std::string_view kContactRequest = "FLusers.asp?e=";

template <typename... Args>
std::string formatted(const char* format, Args... args) {
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), format, args...);
  return text.data();
}

const char* escapeOf(char c) {
  switch (c) {
    case '\r':
      return "\\r";
    case '\n':
      return "\\n";
    case '\t':
      return "\\t";
    case '"':
      return "\\\"";
    case '\\':
      return "\\\\";
    default:
      return nullptr;
  }
}

}  // namespace

RecordSum recordSum(ByteSpan bytes, RecordSum before) {
  constexpr RecordSum kPrime = 0x100000001B3;
  RecordSum sum = before;
  for (const std::uint8_t byte : bytes) {
    sum = (sum ^ byte) * kPrime;
  }
  return sum;
}

std::string escaped(std::string_view text) {
  std::string result;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (const char* escape = escapeOf(c)) {
      result += escape;
    } else if (byte < 0x20 || byte > 0x7E) {
      result += formatted("\\x%02X", static_cast<unsigned>(byte));
    } else {
      result += c;
    }
  }
  return result;
}

std::string inQuotes(std::string_view text) { return '"' + escaped(text) + '"'; }

std::string hexText(ByteSpan bytes) {
  std::string text;
  for (std::size_t at = 0; at < bytes.size();) {
    std::size_t end = at + 1;
    while (end < bytes.size() && bytes[end] == bytes[at]) {
      ++end;
    }
    const std::size_t run = end - at;
    const std::string one = formatted("%02X", static_cast<unsigned>(bytes[at]));
    if (run >= kShortestRun) {
      text += (text.empty() ? "" : " ") + one + "*" + std::to_string(run);
      at = end;
    } else {
      text += (text.empty() ? "" : " ") + one;
      ++at;
    }
  }
  return text;
}

std::string bytesInShort(std::size_t count, ByteSpan head, ByteSpan tail, RecordSum sum) {
  return std::to_string(count) + " bytes " + hexText(head) + " .. " + hexText(tail) + " sum " + sumText(sum);
}

std::string sumText(RecordSum sum) { return formatted("%016llX", static_cast<unsigned long long>(sum)); }

std::string secondsText(Micros time) {
  return formatted("%lld.%06lld", static_cast<long long>(time / kSecond), static_cast<long long>(time % kSecond));
}

std::string withoutContact(const std::string& text) {
  const std::size_t at = text.find(kContactRequest);
  return at == std::string::npos ? text : text.substr(0, at + kContactRequest.size()) + kNotKept;
}

}  // namespace firmlane
