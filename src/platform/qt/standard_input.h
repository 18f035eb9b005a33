// Lines of standard input as they come, without holding up the event loop.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/qt/input_reader.h"

namespace firmlane {

/// Makes standard input, output and error fit for a protocol of bytes. A program that was started without one of them gets the
/// null device in its place; otherwise the next thing that it opens, such as a serial port, takes that number, and what is
/// printed goes there. On Windows a program with windows prints to the console that it was started from, if any. Call it before
/// anything else.
void holdStandardStreams();

class StandardInput {
 public:
  /// What the end of a file, or of the null device, means: the end of the input like that of a pipe, or only that no lines come,
  /// so that a program can run in the background of a script.
  enum class EndOfFile { Ends, MeansNoLines };

  /// `line` takes each line, without its end and without a UTF-8 mark before the first; `ended` is called once when the input has
  /// ended. Of a line beyond kLongest bytes only the first kLongest + 1 are kept.
  StandardInput(std::function<void(const std::string&)> line, std::function<void()> ended, EndOfFile endOfFile);

  /// Takes in what comes until nothing has come for this long, in real time and without the event loop.
  void drain(int milliseconds);

  static constexpr std::size_t kLongest = std::size_t{1} << 20U;

 private:
  void end();
  void split(std::string_view bytes);
  void endLine();

  std::function<void(const std::string&)> line_;
  std::function<void()> ended_;
  EndOfFile endOfFile_;
  std::string pending_;
  bool begun_ = false;
  InputReader reader_;
};

}  // namespace firmlane
