// Where the program keeps its files.
#pragma once

#include <filesystem>

namespace firmlane {

/// The directory that the program was started from when it is the program's own and can be written to; else the user's data
/// directory, made if needed. Needs a QCoreApplication with its name set.
std::filesystem::path programDirectory();

/// Whether files can be made in this directory; tried, not guessed.
bool isWritable(const std::filesystem::path& directory);

}  // namespace firmlane
