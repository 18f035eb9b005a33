// How a record writes what it holds: texts in double quotes, bytes in hex, sums. Everything is plain ASCII, so that a record
// survives the mail; docs/record.md describes it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/bytes.h"
#include "platform/clock.h"

namespace firmlane {

/// The sum of a record: FNV-1a of 64 bits. No CRC: one over an image that ends with its own CRC tells nothing. Continue with the
/// sum of what stands before.
using RecordSum = std::uint64_t;
inline constexpr RecordSum kSumOfNothing = 0xCBF29CE484222325;
RecordSum recordSum(ByteSpan bytes, RecordSum before = kSumOfNothing);

/// On one line; all but printable ASCII as \r, \n, \t, \", \\ or \xE9.
std::string escaped(std::string_view text);
/// The same in double quotes.
std::string inQuotes(std::string_view text);
/// "02 00 1F", a byte that comes more than three times in a row once with its count: "FF*12".
std::string hexText(ByteSpan bytes);
/// "24000 bytes 02 00 .. 1F 1A sum 0123456789ABCDEF": what a record keeps of many bytes, of which `head` and `tail` are the first
/// and last.
std::string bytesInShort(std::size_t count, ByteSpan head, ByteSpan tail, RecordSum sum);
/// Sixteen digits.
std::string sumText(RecordSum sum);
/// Seconds with six digits behind the point.
std::string secondsText(Micros time);

inline ByteSpan bytesOf(std::string_view text) { return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}; }

/// A request's address without what the contact form put into it, and any text that holds such an address.
std::string withoutContact(const std::string& text);
inline constexpr const char* kNotKept = "(not kept)";

}  // namespace firmlane
