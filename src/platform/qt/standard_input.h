// Lines of standard input as they come, without holding up the event loop.
#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <functional>
#include <string>

namespace firmlane {

class StandardInput : public QObject {
 public:
  /// What the end of a file, or of the null device, means: the end of the input like that of a pipe, or only that no lines come,
  /// so that a program can run in the background of a script.
  enum class EndOfFile { Ends, MeansNoLines };

  /// `line` takes each line, without its end; `ended` is called once when the input has ended.
  StandardInput(std::function<void(const std::string&)> line, std::function<void()> ended, EndOfFile endOfFile);

 private:
  void take();

  std::function<void(const std::string&)> line_;
  std::function<void()> ended_;
  EndOfFile endOfFile_;
  std::string pending_;
  QSocketNotifier notifier_;
};

}  // namespace firmlane
