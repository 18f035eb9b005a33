// What the program asks of the user's desktop.
#pragma once

#include <string>

namespace firmlane {

class Desktop {
 public:
  virtual ~Desktop() = default;
  /// Opens a URL or document with the user's default application and returns at once. Throws Failure when nothing opens it.
  virtual void openDocument(const std::string& document) = 0;
  /// Starts the program at this path with a normal window and returns at once; makes it executable first where the platform needs
  /// that. Throws Failure when it is missing or cannot be started.
  virtual void runProgram(const std::string& path) = 0;
};

}  // namespace firmlane
