// The console's ends tied together: standard input, the protocol, the screen of lines, and a desktop that only tells.
#pragma once

#include <QTimer>

#include "app/program.h"
#include "console_options.h"
#include "platform/console/console_screen.h"
#include "platform/console/console_session.h"
#include "platform/qt/qt_platform.h"
#include "platform/qt/standard_input.h"

namespace firmlane {

/// Starts nothing: says on the line what a window's desktop would have been asked.
class TellingDesktop : public Desktop {
 public:
  void openDocument(const std::string& document) override;
  void runProgram(const std::string& path) override;
};

class ConsoleApp {
 public:
  /// Needs a QCoreApplication.
  explicit ConsoleApp(const ConsoleOptions& options, const std::string& directory);

  /// Runs the program to its end.
  void run();

 private:
  void changed();
  void arm();

  QtPlatform platform_;
  double timeScale_;
  ConsoleScreen screen_;
  TellingDesktop desktop_;
  Program program_;
  ConsoleSession session_;
  QTimer alarm_;
};

}  // namespace firmlane
