// Standard input as the system gives it: bytes as they come, from the event loop.
#pragma once

#include <functional>
#include <memory>
#include <string_view>

namespace firmlane {

class InputReader {
 public:
  /// `take` gets what has come, and nothing at all once at the end.
  explicit InputReader(std::function<void(std::string_view)> take);
  ~InputReader();
  InputReader(const InputReader&) = delete;
  InputReader& operator=(const InputReader&) = delete;

  /// Takes in what comes until nothing has come for this long, in real time and without the event loop.
  void drain(int milliseconds);

  /// Whether standard input is a pipe or a socket, whose end says that its writer has gone.
  static bool isPipe();

 private:
  class Half;
  std::unique_ptr<Half> half_;
};

}  // namespace firmlane
