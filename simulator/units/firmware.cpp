#include "units/firmware.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>

#include "platform/failure.h"
#include "units/srecords.h"

namespace firmlane::sim {

namespace {

// Head: marker, kind, three version numbers, length with the low byte first. Tail: check value, low byte first.
constexpr std::array<std::uint8_t, 4> kMarker = {'T', 'V', 'X', '1'};
constexpr std::size_t kKindAt = 4;
constexpr std::size_t kVersionAt = 5;
constexpr std::size_t kLengthAt = 8;
constexpr std::size_t kHeadSize = 12;
constexpr std::size_t kNumberSize = 4;
constexpr std::size_t kLargestFirmware = 4U << 20U;

enum class FileForm { Raw, Records, DigitText };

struct ImageRow {
  ImageKind kind;
  const char* file;
  FileForm form;
  std::size_t usualSize;
};

constexpr std::array<ImageRow, 8> kImages = {{
    {ImageKind::WirelessHub, "hubSL.s19", FileForm::Records, 6000},
    {ImageKind::WirelessDsp, "wls.bin", FileForm::Raw, 20000},
    {ImageKind::WirelessRf, "RFSL.s19", FileForm::Records, 4000},
    {ImageKind::WirelessFront, "FNTLCDc.s19", FileForm::DigitText, 3000},
    {ImageKind::Velarc2Hub, "vrc2hub.s19", FileForm::Records, 6000},
    {ImageKind::Velarc2Dsp, "vrc2.bin", FileForm::Raw, 20000},
    {ImageKind::Velarc2Front, "vrc2fnt.s19", FileForm::Records, 3000},
    {ImageKind::OldVelarc, "vrc.bin", FileForm::Raw, 20000},
}};

const ImageRow& rowOf(ImageKind kind) {
  return *std::find_if(kImages.begin(), kImages.end(), [kind](const ImageRow& row) { return row.kind == kind; });
}

void putNumber(Bytes& bytes, std::size_t at, std::uint32_t number) {
  for (std::size_t i = 0; i < kNumberSize; ++i) {
    bytes[at + i] = static_cast<std::uint8_t>(number >> (8 * i));
  }
}

std::uint32_t numberAt(ByteSpan bytes, std::size_t at) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < kNumberSize; ++i) {
    number |= static_cast<std::uint32_t>(bytes[at + i]) << (8 * i);
  }
  return number;
}

std::uint32_t checkValue(ByteSpan bytes) {
  constexpr std::uint32_t kPolynomial = 0xEDB88320;
  std::uint32_t value = 0xFFFFFFFF;
  for (const std::uint8_t byte : bytes) {
    value ^= byte;
    for (int bit = 0; bit < 8; ++bit) {
      value = (value >> 1U) ^ ((value & 1U) != 0 ? kPolynomial : 0U);
    }
  }
  return ~value;
}

}  // namespace

std::optional<Version> parseVersion(std::string_view text) {
  std::array<std::uint8_t, 3> numbers{};
  std::size_t count = 0;
  while (count < numbers.size()) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), numbers[count]);
    if (error != std::errc() || numbers[count] > 127) {
      return std::nullopt;
    }
    ++count;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    if (text.empty()) {
      break;
    }
    if (text.front() != '.') {
      return std::nullopt;
    }
    text.remove_prefix(1);
  }
  if (count < 2 || !text.empty()) {
    return std::nullopt;
  }
  return Version{numbers[0], numbers[1], numbers[2]};
}

std::string versionText(const Version& version, int numbers) {
  std::string text = std::to_string(version.first) + "." + std::to_string(version.second);
  return numbers < 3 ? text : text + "." + std::to_string(version.third);
}

Bytes makeFirmware(ImageKind kind, const Version& version, std::size_t size) {
  if (size < kSmallestFirmware || size > kLargestFirmware) {
    throw Failure(failure_number::kInvalidArgument, "An image takes 64 to 4194304 bytes");
  }
  Bytes code(size);
  // The filling looks like code: every byte value comes up, and each version differs from the next all over.
  std::uint32_t noise =
      1 + static_cast<std::uint32_t>(kind) * 7919 + version.first * 65537U + version.second * 257U + version.third;
  for (std::uint8_t& byte : code) {
    noise = noise * 1664525 + 1013904223;
    byte = static_cast<std::uint8_t>(noise >> 24U);
  }
  std::copy(kMarker.begin(), kMarker.end(), code.begin());
  code[kKindAt] = static_cast<std::uint8_t>(kind);
  code[kVersionAt] = version.first;
  code[kVersionAt + 1] = version.second;
  code[kVersionAt + 2] = version.third;
  putNumber(code, kLengthAt, static_cast<std::uint32_t>(size));
  putNumber(code, size - kNumberSize, checkValue(ByteSpan(code).first(size - kNumberSize)));
  return code;
}

std::optional<std::size_t> announcedLength(ByteSpan start) {
  if (start.size() < kHeadSize || !std::equal(kMarker.begin(), kMarker.end(), start.begin())) {
    return std::nullopt;
  }
  const std::size_t length = numberAt(start, kLengthAt);
  if (length < kSmallestFirmware || length > kLargestFirmware) {
    return std::nullopt;
  }
  return length;
}

FirmwareCheck checkFirmware(ByteSpan code, ImageKind kind) {
  const std::optional<std::size_t> length = announcedLength(code);
  if (!length) {
    return {"not a firmware image", {}};
  }
  if (code.size() != *length) {
    return {"image has " + std::to_string(code.size()) + " bytes of " + std::to_string(*length), {}};
  }
  if (numberAt(code, *length - kNumberSize) != checkValue(code.first(*length - kNumberSize))) {
    return {"image is damaged", {}};
  }
  if (code[kKindAt] != static_cast<std::uint8_t>(kind)) {
    return {"image is for another processor", {}};
  }
  return {"", Version{code[kVersionAt], code[kVersionAt + 1], code[kVersionAt + 2]}};
}

std::string imageFileName(ImageKind kind) { return rowOf(kind).file; }

std::size_t usualImageSize(ImageKind kind) { return rowOf(kind).usualSize; }

Bytes imageFile(ImageKind kind, const Version& version, std::size_t size) {
  const bool front = kind == ImageKind::WirelessFront || kind == ImageKind::Velarc2Front;
  if (front && size > kLargestFrontImage) {
    throw Failure(failure_number::kInvalidArgument, "A front panel takes images of at most 8190 bytes");
  }
  Bytes code = makeFirmware(kind, version, size);
  switch (rowOf(kind).form) {
    case FileForm::Records:
      return writeRecords(code);
    case FileForm::DigitText:
      return writeDigitText(code);
    case FileForm::Raw:
      break;
  }
  return code;
}

void writeImage(const std::filesystem::path& directory, ImageKind kind, const Version& version, std::size_t size) {
  const Bytes content = imageFile(kind, version, size);
  std::ofstream file(directory / imageFileName(kind), std::ios::binary);
  for (const std::uint8_t byte : content) {
    file.put(static_cast<char>(byte));
  }
  file.close();
  if (!file) {
    throw Failure(failure_number::kPathAccess, "Cannot write " + (directory / imageFileName(kind)).string());
  }
}

}  // namespace firmlane::sim
