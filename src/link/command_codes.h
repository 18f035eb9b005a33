// Message codes of the frames that go to a unit in normal operation.
#pragma once

#include <cstdint>

namespace firmlane::command_code {

inline constexpr std::uint8_t kWhoIsThere = 1;
inline constexpr std::uint8_t kLoadPreset = 10;
inline constexpr std::uint8_t kSetSerial = 39;
inline constexpr std::uint8_t kGetVersions = 94;
inline constexpr std::uint8_t kResetLink = 114;
inline constexpr std::uint8_t kForceReset = 119;

}  // namespace firmlane::command_code
