#include "link/frame.h"

#include <numeric>

namespace firmlane {

namespace {
constexpr std::uint8_t kSevenBits = 0x7F;
constexpr int kGroupBits = 7;

std::uint8_t sevenBitSum(ByteSpan bytes) {
  return static_cast<std::uint8_t>(std::accumulate(bytes.begin(), bytes.end(), 0U) & kSevenBits);
}
}  // namespace

std::array<std::uint8_t, 3> sevenBitGroups(std::int32_t number) {
  // Masked, not divided: a number that is negative or too wide must not put a byte above 127 into a frame, which would end it.
  const auto bits = static_cast<std::uint32_t>(number);
  return {static_cast<std::uint8_t>(bits >> (2 * kGroupBits) & kSevenBits),
          static_cast<std::uint8_t>(bits >> kGroupBits & kSevenBits), static_cast<std::uint8_t>(bits & kSevenBits)};
}

Bytes buildFrame(FrameKind kind, std::int32_t address, std::uint8_t code, ByteSpan data) {
  const auto groups = sevenBitGroups(address);
  Bytes frame{kFrameStart, groups[0], groups[1], groups[2], code};
  frame.insert(frame.end(), data.begin(), data.end());
  frame.push_back(sevenBitSum(ByteSpan(frame).subspan(1)));
  if (kind == FrameKind::RunFrame) {
    frame.push_back(kRunFrameEnd);
  } else {
    frame.insert(frame.end(), 2, kBootFrameEnd);
  }
  return frame;
}

void FrameLengths::fill() {
  entries_ = {};
  entries_[6] = 8;
  entries_[31] = 8;
  entries_[96] = 8;
  entries_[105] = 19;
}

std::int16_t FrameLengths::operator[](int code) const {
  return code >= 0 && code < kCodes ? entries_.at(static_cast<std::size_t>(code)) : std::int16_t{0};
}

int Valid_Check(ByteSpan message, const FrameLengths& lengths) {
  constexpr std::size_t kCodeIndex = 4;
  if (message.size() <= kCodeIndex || message[kCodeIndex] > kSevenBits) {
    return 0;
  }
  const auto length = static_cast<std::size_t>(lengths[message[kCodeIndex]]);
  if (length == 0 || message.size() + 1 < length) {
    return 0;
  }
  const std::uint8_t sum = sevenBitSum(message.subspan(1, length - 3));
  return sum == (message[length - 2] & kSevenBits) ? 1 : 0;
}

}  // namespace firmlane
