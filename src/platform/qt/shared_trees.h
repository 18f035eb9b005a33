// Where the system itself puts programs.
#pragma once

#include <filesystem>

namespace firmlane {

/// Whether a directory is one that the system or its installers look after: firmware has no business there, even where it could
/// be written to.
bool isShared(const std::filesystem::path& directory);

}  // namespace firmlane
