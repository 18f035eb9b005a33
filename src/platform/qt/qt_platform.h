// Everything below the program that comes from Qt without windows, built once and in order. The programs with windows and the
// console share it; what shows the forms and what stands for the desktop is theirs.
#pragma once

#include <filesystem>

#include "platform/event_queue.h"
#include "platform/files.h"
#include "platform/qt/port_map.h"
#include "platform/qt/qt_event_source.h"
#include "platform/qt/qt_http_client.h"
#include "platform/qt/qt_serial_driver.h"
#include "record/record.h"

namespace firmlane {

/// Needs a QCoreApplication (or QApplication) that outlives it.
struct QtPlatform {
  struct Options {
    /// The program's own directory; see programDirectory().
    std::filesystem::path directory;
    /// Devices of port numbers; none for the machine's own.
    PortMap::Devices ports;
    /// How many times as fast as the real clock the program's clock runs, 1 to 1000.
    double timeScale = 1.0;
  };

  explicit QtPlatform(const Options& options)
      : source(options.timeScale), ports(options.directory, options.ports), files(options.directory, record) {}

  QtEventSource source;
  Record record{source};
  EventQueue queue{source, source};
  PortMap ports;
  QtSerialDriver mainDriver{ports};
  QtSerialDriver versionDriver{ports};
  QtHttpClient http{queue};
  Files files;
};

}  // namespace firmlane
