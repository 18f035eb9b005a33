// Whatever the bytes, reading a list ends, keeps to its tables, and points into the text.
#include "catalogue/update_list.h"

#include "bench.h"

namespace {

using firmlane::UpdateList;
using firmlane::fuzz::require;

void check(const UpdateList& list, std::string_view text) {
  const auto within = [text](std::string_view piece) {
    return piece.empty() || (piece.data() >= text.data() && piece.data() + piece.size() <= text.data() + text.size());
  };
  require(list.locations.size() <= firmlane::kMostEntries);
  require(list.names.size() <= list.locations.size() + 1);
  require(list.failure || list.names.size() == list.locations.size());
  require(list.systems.size() <= firmlane::kMostSystems);
  for (const std::string_view name : list.names) {
    require(within(name));
  }
  for (const std::string_view location : list.locations) {
    require(within(location));
  }
  for (const auto& system : list.systems) {
    require(system.size() <= 8);
    for (const std::string_view field : system) {
      require(within(field));
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  check(firmlane::readFirmwareList(text, "WLS", 8), text);
  check(firmlane::readFirmwareList(text, "VRC", 7), text);
  check(firmlane::readFirmwareList(text, "VRC", 0), text);
  check(firmlane::readSoftwareList(text), text);
  return 0;
}
