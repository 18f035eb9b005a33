// The composition root: builds every form and subsystem, ties events to their handlers, and runs the program. It alone knows
// all; nothing takes it as an argument.
#pragma once

#include <memory>
#include <string>

#include "platform/desktop.h"
#include "platform/files.h"
#include "platform/http_client.h"
#include "platform/screen.h"
#include "platform/serial_port.h"
#include "progress/activity.h"
#include "state/run_state.h"

namespace firmlane {

/// Scheme and host of the two web servers, such as "http://www.tolvex.example".
struct Servers {
  std::string maker;
  std::string registration;
};

/// What the program needs of the world. All of it outlives the program.
struct Platform {
  EventQueue& queue;
  Screen& screen;
  SerialDriver& mainDriver;
  SerialDriver& versionDriver;
  HttpClient& http;
  Desktop& desktop;
  const Files& files;
  Servers servers;
  /// Is told of what the program does. What the files report is set where they are made.
  Recorder& recorder = noRecorder();
};

class Program {
 public:
  explicit Program(const Platform& platform, const BuildSwitches& switches = {});
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  /// The forms, for whoever shows or works them.
  [[nodiscard]] FormHost& host();
  [[nodiscard]] const RunState& state() const;
  /// What goes on, for whoever shows or keeps it.
  [[nodiscard]] Activity& activity();

  /// Loads and shows the start form.
  void start();
  /// Handles events until the program ends. Call after start.
  void run();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace firmlane
