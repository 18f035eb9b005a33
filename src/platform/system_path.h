// A text as the system's own name of a file. Whatever opens, looks for or makes a file by other ways than Files goes through
// here.
#pragma once

#include <filesystem>
#include <string>

namespace firmlane {

/// The path that a text stands for. On Windows a text is UTF-8, or Latin-1 where it is no UTF-8, whatever the code page, and a
/// path that is too long for older programs comes in the form that has no limit.
std::filesystem::path systemPath(const std::string& text);

}  // namespace firmlane
