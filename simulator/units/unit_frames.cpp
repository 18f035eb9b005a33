#include "units/unit_frames.h"

#include <numeric>

namespace firmlane::sim {

namespace {
constexpr std::uint8_t kStart = 0x02;
constexpr std::uint8_t kRunEnd = 0x80;
constexpr std::uint8_t kBootEnd = 0x3E;
constexpr std::size_t kShortestFrame = 7;
constexpr std::size_t kBootFrameSize = 9;
constexpr std::size_t kLongestFrame = 32;

std::uint8_t checksum(ByteSpan summed) {
  return static_cast<std::uint8_t>(std::accumulate(summed.begin(), summed.end(), 0U) & kSevenBits);
}
}  // namespace

Bytes unitFrame(FrameEnd end, std::int32_t address, std::uint8_t code, ByteSpan data) {
  const auto number = static_cast<std::uint32_t>(address);
  const Bytes head = {kStart, static_cast<std::uint8_t>(number >> 14U & kSevenBits),
                      static_cast<std::uint8_t>(number >> 7U & kSevenBits), static_cast<std::uint8_t>(number & kSevenBits), code};
  Bytes frame;
  frame.reserve(head.size() + data.size() + 3);
  for (const ByteSpan part : {ByteSpan(head), data}) {
    frame.insert(frame.end(), part.begin(), part.end());
  }
  frame.push_back(checksum(ByteSpan(frame).subspan(1)));
  frame.push_back(end == FrameEnd::Run ? kRunEnd : kBootEnd);
  if (end == FrameEnd::Boot) {
    frame.push_back(kBootEnd);
  }
  return frame;
}

std::int32_t groupsValue(ByteSpan groups) { return (groups[0] * 128 + groups[1]) * 128 + groups[2]; }

std::optional<HeardFrame> FrameReader::take(std::uint8_t byte) {
  if (bytes_.empty() && byte != kStart) {
    return std::nullopt;
  }
  bytes_.push_back(byte);
  if (byte == kRunEnd) {
    return finish(FrameEnd::Run, 1);
  }
  // Commands of the start-up phase all have one data byte, so two ">" elsewhere are data.
  if (bytes_.size() == kBootFrameSize && byte == kBootEnd && bytes_[kBootFrameSize - 2] == kBootEnd) {
    return finish(FrameEnd::Boot, 2);
  }
  if (bytes_.size() > kLongestFrame) {
    reset();
  }
  return std::nullopt;
}

std::optional<HeardFrame> FrameReader::finish(FrameEnd end, std::size_t endSize) {
  const Bytes frame = std::move(bytes_);
  reset();
  if (frame.size() < kShortestFrame) {
    return std::nullopt;
  }
  const std::size_t checksumAt = frame.size() - endSize - 1;
  if (checksum(ByteSpan(frame).subspan(1, checksumAt - 1)) != frame[checksumAt]) {
    ++badFrames_;
    return std::nullopt;
  }
  return HeardFrame{end, groupsValue(ByteSpan(frame).subspan(1, 3)), frame[4],
                    Bytes(frame.begin() + 5, frame.begin() + static_cast<std::ptrdiff_t>(checksumAt))};
}

}  // namespace firmlane::sim
