// Small helpers for the texts and numbers that the system shows and reads back.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace firmlane {

inline constexpr const char* kCr = "\r";
inline constexpr const char* kCrLf = "\r\n";

/// The program's version, as titles and the about box show it.
inline constexpr int kVersionMajor = 5;
inline constexpr int kVersionMinor = 0;
inline constexpr int kVersionRevision = 9;

/// Position from 1 of the first `what` at or behind position `start`, 0 if there is none or `start` is below 1.
std::int32_t find(std::string_view text, std::int32_t start, std::string_view what);

/// The text without blanks at either end.
std::string trimmed(std::string_view text);

/// Leading number of a text: blanks skipped, digits with one point, anything else ends it. 0 when there is none ("", "N/A").
double leadingNumber(std::string_view text);

/// A number with at least one digit before and exactly two behind the point, half away from zero: 2.3 gives "2.30".
std::string twoDecimals(double number);

/// A number in plain text without trailing zeros: 4.87, 5, 0.5.
std::string plainNumber(double number);

/// "first.second".
std::string dotted(int first, int second);

/// a / b to the nearest integer, a half to the even neighbour.
std::int32_t nearest(std::int32_t a, std::int32_t b);

}  // namespace firmlane
