#include "images/digit_text.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "platform/failure.h"

namespace firmlane {

namespace {

constexpr std::size_t kDigitsPerValue = 2;

/// Groups of the digit text by value: the character codes of "0" to "9" and "A" to "F".
constexpr std::array<std::string_view, 16> kGroups = {"48", "49", "50", "51", "52", "53", "54", "55",
                                                      "56", "57", "65", "66", "67", "68", "69", "70"};

int hexValue(char c) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  const std::size_t value = kDigits.find(static_cast<char>(std::toupper(static_cast<unsigned char>(c))));
  return value == std::string_view::npos ? 0 : static_cast<int>(value);
}

[[noreturn]] void refuse(const std::string& name, const std::string& why) {
  throw Failure(failure_number::kTypeMismatch, name + " is not a front panel image: " + why);
}

bool endsField(char c) { return c == ',' || c == '\r' || c == '\n'; }

/// A field, and what of the file stands behind it.
std::string_view takeField(std::string_view& file, const std::string& name) {
  const bool quoted = file.front() == '"';
  if (quoted) {
    file.remove_prefix(1);
  }
  const std::size_t end =
      quoted ? file.find('"') : static_cast<std::size_t>(std::find_if(file.begin(), file.end(), endsField) - file.begin());
  if (end == std::string_view::npos) {
    refuse(name, "a quote is not closed");
  }
  const std::string_view field = file.substr(0, end);
  file.remove_prefix(quoted ? end + 1 : end);
  if (file.empty()) {
    return field;
  }
  if (!endsField(file.front())) {
    refuse(name, "there is something behind a quote");
  }
  file.remove_prefix(file.starts_with("\r\n") ? 2 : 1);
  return field;
}

}  // namespace

std::uint8_t H2D(std::string_view text) {
  constexpr int kSixteen = 16;
  const int first = text.empty() ? 0 : hexValue(text[0]);
  const int second = text.size() < 2 ? 0 : hexValue(text[1]);
  return static_cast<std::uint8_t>(first * kSixteen + second);
}

std::uint8_t Asc2Num(std::string_view text) {
  const auto* const group = std::find(kGroups.begin(), kGroups.end(), text);
  return group == kGroups.end() ? std::uint8_t{0} : static_cast<std::uint8_t>(group - kGroups.begin());
}

void requireDigitText(std::string_view text, const std::string& name) {
  if (text.empty()) {
    refuse(name, "it is empty");
  }
  if (text.size() > kDigitTextLimit) {
    refuse(name, "it is too long");
  }
  if (text.size() % kDigitsPerByte != 0) {
    refuse(name, "its last byte is cut short");
  }
  for (std::size_t i = 0; i < text.size(); i += kDigitsPerValue) {
    if (std::find(kGroups.begin(), kGroups.end(), text.substr(i, kDigitsPerValue)) == kGroups.end()) {
      refuse(name, "no hexadecimal digit at position " + std::to_string(i + 1));
    }
  }
}

bool lastField(std::string_view file, const std::string& name, std::string& field) {
  const bool any = !file.empty();
  std::string_view last;
  while (!file.empty()) {
    last = takeField(file, name);
  }
  field = last;
  return any;
}

}  // namespace firmlane
