// Lines of standard input as they come, without holding up the event loop.
#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <functional>
#include <string>

namespace firmlane::sim {

class StandardInput : public QObject {
 public:
  /// `line` takes each line, without its end; `ended` is called when a pipe was closed. The end of a file or of the null device
  /// means only that no commands come, so that the simulator can run in the background of a script.
  StandardInput(std::function<void(const std::string&)> line, std::function<void()> ended);

 private:
  void take();

  std::function<void(const std::string&)> line_;
  std::function<void()> ended_;
  std::string pending_;
  QSocketNotifier notifier_;
};

}  // namespace firmlane::sim
