// Which program this is, for Qt, the system and whoever asks with --version. The version itself stands in CMakeLists.txt.
#pragma once

#include <string>

namespace firmlane {

/// Sets the name that the program's files go by, and the version. Call after the application is there.
void introduce(const std::string& name);

/// What --version prints of a program, with the line's end.
std::string versionLine(const std::string& program);

}  // namespace firmlane
