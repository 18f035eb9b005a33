// The wire format of the unit link: how a frame is built and how a received one is checked. Positions count from 1.
//
//   1 start 0x02 | 2-4 address, three groups of seven bits, high first | 5 code | 6.. data | checksum | terminator
//
// A RunFrame ends in 0x80, a BootFrame in 0x3E 0x3E. The checksum is the sum of the bytes from position 2 on, kept to seven bits.
#pragma once

#include <array>
#include <cstdint>

#include "platform/bytes.h"

namespace firmlane {

inline constexpr std::uint8_t kFrameStart = 0x02;
inline constexpr std::uint8_t kRunFrameEnd = 0x80;
inline constexpr std::uint8_t kBootFrameEnd = 0x3E;  // ">", twice

/// Fewer bytes than this are no frame.
inline constexpr std::size_t kSmallestFrame = 6;

enum class FrameKind { RunFrame, BootFrame };

/// The low 21 bits of a number as three groups of seven bits, high first.
std::array<std::uint8_t, 3> sevenBitGroups(std::int32_t number);

/// The frame's bytes. `data` bytes are below 128.
Bytes buildFrame(FrameKind kind, std::int32_t address, std::uint8_t code, ByteSpan data);

/// Position of the first terminator byte of a BootFrame, by code; 0 where no such frame is accepted.
class FrameLengths {
 public:
  static constexpr int kCodes = 110;

  /// All 0 until filled.
  void fill();
  /// The entry of a code; 0 for a code without one, whatever its value.
  [[nodiscard]] std::int16_t operator[](int code) const;

 private:
  std::array<std::int16_t, kCodes> entries_{};
};

/// 1 if the frame's checksum is good under the length table, 0 if not; 0 too for a code without an entry or a frame cut short.
int Valid_Check(ByteSpan message, const FrameLengths& lengths);

}  // namespace firmlane
