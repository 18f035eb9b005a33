// What the text of an update list says: the versions that can be downloaded and the systems that were released. Text in, findings
// out; it knows neither the network nor the screen. The list comes from a server, so any bytes at all must be survived.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/failure.h"

namespace firmlane {

/// Entries that a list may name of one kind.
inline constexpr std::size_t kMostEntries = 21;
/// Released systems that a list may name.
inline constexpr std::size_t kMostSystems = 11;
/// Characters that a list may have.
inline constexpr std::int32_t kLongestList = 32767;

/// What was found, as far as the reading came. The views point into the text that was read.
struct UpdateList {
  /// Display names. After a failure there may be one more of them than locations.
  std::vector<std::string_view> names;
  /// Where each can be fetched: a URL as it stands in the list, with a CR behind it when the line ends so.
  std::vector<std::string_view> locations;
  /// The fields of each SYSTEM line; the last one may be incomplete after a failure.
  std::vector<std::vector<std::string_view>> systems;
  /// Index of the SYSTEM line read last; nothing when none were looked for.
  std::optional<std::int16_t> lastSystem;
  /// Why the reading ended early.
  std::optional<Failure> failure;
};

/// The firmware entries behind `entryTag` and, with `systemFields` above 0, the SYSTEM lines of so many fields.
UpdateList readFirmwareList(std::string_view text, std::string_view entryTag, std::size_t systemFields);

/// The REMOTE lines.
UpdateList readSoftwareList(std::string_view text);

}  // namespace firmlane
