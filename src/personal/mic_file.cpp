#include "personal/mic_file.h"

#include <charconv>
#include <cmath>
#include <optional>

#include "platform/failure.h"
#include "state/text.h"

namespace firmlane {

namespace {

constexpr int kLongest = 32767;
constexpr int kHighestFreq = 32767;
constexpr int kHighestWidth = 32767;  // in hundredths
constexpr int kLowestDepth = -84;
constexpr int kHighestDepth = kLongest;
constexpr double kHundred = 100;
constexpr int kGroup = 128;
constexpr char kSeparator = '|';
constexpr char kLineEnd = '\r';
constexpr const char* kEmptySlot = "NONE";

template <typename Number>
std::optional<Number> parse(const std::string& text) {
  Number number{};
  const char* end = text.data() + text.size();
  const char* begin = text.starts_with('+') ? text.data() + 1 : text.data();
  const auto [rest, error] = std::from_chars(begin, end, number);
  return error == std::errc() && rest == end ? std::optional(number) : std::nullopt;
}

std::uint8_t low(int number) { return static_cast<std::uint8_t>(number % kGroup); }
std::uint8_t high(int number) { return static_cast<std::uint8_t>(number / kGroup); }

MicGroup nameGroup(const std::string& name) {
  MicGroup group{};
  if (name == kEmptySlot) {
    return group;
  }
  for (std::size_t i = 0; i < group.size(); ++i) {
    group.at(i) = i < name.size() ? static_cast<std::uint8_t>(name[i]) : ' ';
  }
  return group;
}

}  // namespace

MicFile::MicFile(std::string text) : text_(std::move(text)) {
  if (text_.size() > kLongest) {
    throw Failure(failure_number::kOverflow, std::string(kName) + " is longer than " + std::to_string(kLongest) + " bytes");
  }
}

MicFile::ModelLine MicFile::modelLine() {
  beginLine();
  const std::string name = trimmed(field("Name", kSeparator));
  return {nameGroup(name), filter()};
}

MicGroup MicFile::filterLine() {
  beginLine();
  return filter();
}

int MicFile::percent() const {
  constexpr std::size_t kAll = 100;
  return text_.empty() ? 0 : static_cast<int>(position_ * kAll / text_.size());
}

void MicFile::beginLine() {
  ++line_;
  if (position_ < text_.size() && text_[position_] == '\n') {
    ++position_;
  }
}

std::string MicFile::field(const char* name, char end) {
  const std::size_t lineEnd = text_.find(kLineEnd, position_);
  const std::size_t found = end == kLineEnd ? lineEnd : text_.find(end, position_);
  if (found == std::string::npos || found > lineEnd) {
    fail(name, failure_number::kInvalidArgument,
         end == kLineEnd ? "the line end (CR LF) is missing" : "the \"|\" behind it is missing");
  }
  std::string value = text_.substr(position_, found - position_);
  position_ = found + 1;
  return value;
}

double MicFile::decimal(const char* name, char end) {
  const std::string value = trimmed(field(name, end));
  const auto number = parse<double>(value);
  if (!number || !std::isfinite(*number)) {
    fail(name, failure_number::kTypeMismatch, "\"" + value + "\" is not a number");
  }
  return *number;
}

int MicFile::integer(const char* name, char end, int lowest, int highest) {
  const std::string value = trimmed(field(name, end));
  const auto number = parse<std::int64_t>(value);
  if (!number) {
    fail(name, failure_number::kTypeMismatch, "\"" + value + "\" is not a whole number");
  }
  if (*number < lowest || *number > highest) {
    fail(name, failure_number::kOverflow, value + " is not from " + std::to_string(lowest) + " to " + std::to_string(highest));
  }
  return static_cast<int>(*number);
}

MicGroup MicFile::filter() {
  const int freq = integer("Freq", kSeparator, 0, kHighestFreq);
  const double width = std::nearbyint(decimal("Width", kSeparator) * kHundred);
  if (width < 0 || width > kHighestWidth) {
    fail("Width", failure_number::kOverflow, "not from 0 to " + twoDecimals(kHighestWidth / kHundred));
  }
  const int hundredths = static_cast<int>(width);
  const int depth = integer("Depth", kLineEnd, kLowestDepth, kHighestDepth);
  return {high(high(freq)), low(freq / kGroup), low(freq), low(depth - kLowestDepth), high(hundredths), low(hundredths)};
}

void MicFile::fail(const char* name, int number, const std::string& what) const {
  throw Failure(number, "line " + std::to_string(line_) + ", " + name + ": " + what);
}

}  // namespace firmlane
