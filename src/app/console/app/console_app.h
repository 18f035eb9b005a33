// The console's ends tied together: standard input, the protocol, the screen of lines, and a desktop that only tells.
#pragma once

#include <memory>
#include <optional>

#include "app/details.h"
#include "app/program.h"
#include "console/console_screen.h"
#include "console/console_session.h"
#include "console/console_source.h"
#include "console_options.h"
#include "platform/qt/qt_event_source.h"
#include "platform/qt/qt_http_client.h"
#include "platform/qt/qt_serial_driver.h"
#include "record_file.h"

namespace firmlane {

/// Starts nothing: says on the line what a window's desktop would have been asked. What is not there fails as it would there.
class TellingDesktop : public Desktop {
 public:
  explicit TellingDesktop(PrintLine print) : print_(std::move(print)) {}

  void openDocument(const std::string& document) override;
  void runProgram(const std::string& path) override;

 private:
  PrintLine print_;
};

class ConsoleApp {
 public:
  /// Needs a QCoreApplication.
  ConsoleApp(const ConsoleOptions& options, const std::string& directory);

  /// Runs the program to its end. The command that failed, when that was what ended it; else empty.
  std::string run();

 private:
  void print(const Json& line);

  QtEventSource world_;
  ConsoleSource source_{world_};
  EventQueue queue_{world_, source_};
  Record record_{world_};
  PortMap ports_;
  QtSerialDriver mainDriver_{ports_};
  QtSerialDriver versionDriver_{ports_};
  QtHttpClient http_{queue_};
  Files files_;
  ConsoleScreen screen_;
  TellingDesktop desktop_;
  std::unique_ptr<Program> program_;
  Details details_;
  std::optional<RecordFile> recordFile_;
  ConsoleSession session_;
};

}  // namespace firmlane
