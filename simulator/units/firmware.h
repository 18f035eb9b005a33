// Small firmware images for the simulated units. Each tells its processor, its version and its length, and ends in a check value,
// so a unit can refuse an image that is cut, changed or meant for another processor. Real images say none of this.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/bytes.h"

namespace firmlane::sim {

/// What an image is made for. Both RF sections take one image, and so do both fronts of a Velarc2.
enum class ImageKind : std::uint8_t {
  WirelessHub,
  WirelessDsp,
  WirelessRf,
  WirelessFront,
  Velarc2Hub,
  Velarc2Dsp,
  Velarc2Front,
  OldVelarc
};

/// A version as the unit holds it. Wireless processors have two numbers, those of a Velarc three.
struct Version {
  std::uint8_t first = 0;
  std::uint8_t second = 0;
  std::uint8_t third = 0;
  friend bool operator==(const Version&, const Version&) = default;
};

/// "2.31" or "5.0.2"; each number below 128. Nothing for any other text.
std::optional<Version> parseVersion(std::string_view text);
/// The version's first `numbers` numbers, joined by points.
std::string versionText(const Version& version, int numbers);

/// The smallest image: its head, its check value, and room for the vector table of a front panel.
inline constexpr std::size_t kSmallestFirmware = 64;
/// The largest image that a front panel takes.
inline constexpr std::size_t kLargestFrontImage = 8190;

/// The code of an image. The same arguments give the same bytes. Throws Failure for a size below kSmallestFirmware.
Bytes makeFirmware(ImageKind kind, const Version& version, std::size_t size);

/// The length that the beginning of an image announces; nothing as long as too little is there, or when it is no image of ours.
std::optional<std::size_t> announcedLength(ByteSpan start);

struct FirmwareCheck {
  std::string complaint;  // empty for a good image
  Version version;
  [[nodiscard]] bool good() const { return complaint.empty(); }
};
/// Whether these bytes are a whole image for `kind`.
FirmwareCheck checkFirmware(ByteSpan code, ImageKind kind);

/// The name under which the maker's server and the program keep the image.
std::string imageFileName(ImageKind kind);
/// The file's content: raw code, S-record text with CR LF line ends, or the digit text of a wireless front panel.
Bytes imageFile(ImageKind kind, const Version& version, std::size_t size);
/// A size that is quick to send and still shows progress.
std::size_t usualImageSize(ImageKind kind);
/// Writes the image file into a directory under its name.
void writeImage(const std::filesystem::path& directory, ImageKind kind, const Version& version, std::size_t size);

}  // namespace firmlane::sim
