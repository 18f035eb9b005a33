#include "state/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace firmlane {

std::int32_t find(std::string_view text, std::int32_t start, std::string_view what) {
  if (start < 1) {
    return 0;
  }
  const std::size_t found = text.find(what, static_cast<std::size_t>(start - 1));
  return found == std::string_view::npos ? 0 : static_cast<std::int32_t>(found) + 1;
}

std::string trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) {
    return {};
  }
  return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

double leadingNumber(std::string_view text) {
  const std::string_view digits = text.substr(std::min(text.size(), text.find_first_not_of(' ')));
  std::size_t end = 0;
  bool point = false;
  for (; end < digits.size(); ++end) {
    const char c = digits[end];
    if (c == '.' && !point) {
      point = true;
    } else if (c < '0' || c > '9') {
      break;
    }
  }
  double number = 0;
  std::from_chars(digits.data(), digits.data() + end, number);
  return number;
}

std::string twoDecimals(double number) {
  constexpr double kHundred = 100;
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.2f", std::round(number * kHundred) / kHundred);
  return text.data();
}

std::string plainNumber(double number) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.10g", number);
  return text.data();
}

std::string dotted(int first, int second) { return std::to_string(first) + "." + std::to_string(second); }

std::int32_t nearest(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(std::nearbyint(static_cast<double>(a) / static_cast<double>(b)));
}

}  // namespace firmlane
