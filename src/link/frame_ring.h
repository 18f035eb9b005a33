// The rings through which received frames pass from the bytes that arrive to what takes them apart.
#pragma once

#include <cstdint>

namespace firmlane {

/// Slots in use, one after another and then from the first again.
inline constexpr std::int16_t kRingSlots = 30;

/// Bytes that are kept of a frame without an end: a line that brings nothing else must not fill the memory.
inline constexpr std::size_t kLongestBuffer = 32767;

/// The slot behind this one.
constexpr std::int16_t nextSlot(std::int16_t slot) { return static_cast<std::int16_t>((slot + 1) % kRingSlots); }

}  // namespace firmlane
