// The ground that logic tests stand on: virtual time, lines in memory, a recording screen, all forms. It holds no subsystem;
// a test builds those it is about.
#pragma once

#include <filesystem>
#include <string>

#include "platform/files.h"
#include "platform/serial_port.h"
#include "platform/virtual/scripted_screen.h"
#include "platform/virtual/scripted_world.h"
#include "platform/virtual/virtual_line.h"
#include "platform/virtual/virtual_time.h"
#include "progress/supervision.h"
#include "quick_disk.h"
#include "state/auto_form.h"
#include "state/form1.h"
#include "state/frm_port.h"
#include "state/frm_version.h"
#include "state/run_state.h"
#include "state/small_forms.h"

namespace firmlane::test {

/// A directory that is gone when the test is over.
class TemporaryDirectory {
 public:
  TemporaryDirectory();
  ~TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  void write(const std::string& name, const std::string& content) const;
  void write(const std::string& name, const Bytes& content) const;
  [[nodiscard]] std::string read(const std::string& name) const;
  [[nodiscard]] bool has(const std::string& name) const;

 private:
  std::filesystem::path path_;
};

/// "02 00 1F": bytes as hex text, for assertions that show what came instead.
std::string hex(ByteSpan bytes);
/// The other way round; blanks are optional.
Bytes bytes(const std::string& hexText);

/// The world below the program: time, screen, disk, lines, network, desktop.
struct Ground {
  VirtualTime time;
  EventQueue queue{time, time};
  ScriptedScreen screen{time};
  TemporaryDirectory directory;
  Files files{directory.path(), noRecorder(), std::make_shared<QuickDisk>()};
  VirtualWires wires{time};
  VirtualDriver mainDriver{wires};
  VirtualDriver versionDriver{wires};
  ScriptedHttp http{queue, time};
  RecordingDesktop desktop;

  /// Passes events for a span of virtual time.
  void run(Micros span);
  /// Passes events until `done` holds; fails the test when that takes longer than `limit` of virtual time.
  void runUntil(const std::function<bool()>& done, Micros limit);
  /// Does something from outside of handlers after a span of virtual time.
  void after(Micros span, std::function<void()> action) { time.after(span, std::move(action)); }
};

/// The ground with ports, run state and all forms, and nothing that works them. Form1 is loaded and on screen.
struct World : Ground {
  World();

  FormHost host{queue, screen};
  SerialPort mainPort{queue, mainDriver};
  SerialPort versionPort{queue, versionDriver};

  RunState state;
  Activity activity{time};
  Form1 form1{host};
  FrmPort frmPort{host};
  FrmVersion frmVersion{host};
  FrmAuto frmAuto{host};
  FrmVRCAuto frmVRCAuto{host};
  FrmRecover frmRecover{host};
  FrmAbout frmAbout{host};
  FrmInHouse frmInHouse{host};
  FrmDBUG frmDBUG{host};
  NewSerial newserial{host};
  WizardInCharge wizard{state, form1, frmAuto, frmVRCAuto};
  Supervision supervision{queue, state, form1, wizard, activity};
};

}  // namespace firmlane::test
