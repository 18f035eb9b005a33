// Frames as a unit builds and reads them. The program has code of its own for the same format: a unit that borrowed it would
// agree with its mistakes.
#pragma once

#include <array>
#include <optional>

#include "platform/bytes.h"

namespace firmlane::sim {

/// What is left of a sum, and of each byte of a number.
inline constexpr std::uint8_t kSevenBits = 0x7F;

/// How a frame ends.
enum class FrameEnd {
  Run,      // 80
  Boot,     // 3E 3E
  Confirm,  // a single 3E: the program waits for exactly eight bytes here, and a ninth would stand before its next answer
};

/// A frame of the unit. `address` is the number in the address positions, 0 but for answers that carry a serial number there.
Bytes unitFrame(FrameEnd end, std::int32_t address, std::uint8_t code, ByteSpan data);

/// Three groups of seven bits as a number, high group first.
std::int32_t groupsValue(ByteSpan groups);

struct HeardFrame {
  FrameEnd end;
  std::int32_t address;
  std::uint8_t code;
  Bytes data;
};

/// Cuts frames out of the bytes that a unit hears. Bytes outside of frames are passed over.
class FrameReader {
 public:
  /// Takes a byte; gives the frame that it completes. A frame with a wrong checksum counts as bad and is passed over.
  std::optional<HeardFrame> take(std::uint8_t byte);
  void reset() { bytes_.clear(); }
  /// Frames with a wrong checksum so far.
  [[nodiscard]] int badFrames() const { return badFrames_; }

 private:
  std::optional<HeardFrame> finish(FrameEnd end, std::size_t endSize);

  Bytes bytes_;
  int badFrames_ = 0;
};

}  // namespace firmlane::sim
