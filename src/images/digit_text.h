// Digit text: a front panel image as decimal digits, four for each code byte. Each hexadecimal digit of the code stands as the
// two decimal digits of its character code, so the byte 3F is "5170". Here it is read from disk, or made from an S-record file.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace firmlane {

/// Digits of an image from which the sixteen-bit positions of a front panel stream can no longer reach its end.
inline constexpr std::size_t kDigitTextLimit = 32767;
/// Digits for each byte of the code.
inline constexpr std::size_t kDigitsPerByte = 4;

/// Value of a two-character hexadecimal text; a character that is no hexadecimal digit counts 0.
std::uint8_t H2D(std::string_view text);

/// Value of one two-digit group of the digit text, 0 to 15; 0 for any other text.
std::uint8_t Asc2Num(std::string_view text);

/// Throws Failure, in words about `name`, unless this is digit text that a front panel can take: groups of hexadecimal digits in
/// upper case, four digits a code byte, at least one and not more than kDigitTextLimit.
void requireDigitText(std::string_view text, const std::string& name);

/// The last field of a text file whose fields end at a comma or a line end and may stand in double quotes, which are not part of
/// them. Returns whether there is a field at all. Throws Failure, in words about `name`, for a quote that is not closed or has
/// something behind it.
bool lastField(std::string_view file, const std::string& name, std::string& field);

}  // namespace firmlane
