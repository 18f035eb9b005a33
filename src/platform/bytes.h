// Bytes on the line and in image files. They are never texts: nothing here passes through a character set.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace firmlane {

using Bytes = std::vector<std::uint8_t>;
using ByteSpan = std::span<const std::uint8_t>;

}  // namespace firmlane
