// What a record says of a file: enough to tell which one it was, and a small one in full.
#pragma once

#include <string>

namespace firmlane {

/// Its name and "missing", "empty", "N bytes sum 0123456789ABCDEF", or of at most 64 bytes all of them; "not a file" for a pipe
/// or a directory.
std::string fileNote(const std::string& path);

}  // namespace firmlane
