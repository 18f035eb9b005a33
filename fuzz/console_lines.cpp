// Whatever lines a script holds: each command gets one answer, on one line of JSON, and the program lives on.
#include <sstream>

#include "bench.h"
#include "console/console_source.h"
#include "platform/virtual/virtual_time.h"
#include "state/form1.h"
#include "state/frm_port.h"
#include "state/small_forms.h"

namespace {

using namespace firmlane;
using fuzz::require;

struct Bench {
  VirtualTime time;
  ConsoleSource source{time};
  EventQueue queue{time, source};
  std::size_t answers = 0;
  PrintLine print = [this](const Json& line) {
    const std::string text = line.text();
    require(text.find('\n') == std::string::npos && Json::parse(text) == line);
    answers += text.starts_with("{\"ok\":") ? 1 : 0;
  };
  ConsoleScreen screen{print};
  FormHost host{queue, screen};
  RunState state;
  Form1 form1{host};
  FrmPort frmPort{host};
  NewSerial newserial{host};
  Activity activity{time};
  ConsoleSession session{host, state, activity, print};

  Bench() {
    screen.onBoxClosed = [this] { session.boxClosed(); };
    source.attach(session);
    form1.Command3.OnClick = [this] { frmPort.ShowModal(); };
    form1.Command5.OnClick = [this] {
      host.showMessageBox({.text = "a question\r\nof two lines", .title = "\xE4\xF6", .buttons = MessageButtons::YesNo});
    };
    newserial.btnOK.OnClick = [this] { newserial.Unload(); };
    form1.Show();
    newserial.Show();
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Bench bench;
  std::istringstream script(std::string(reinterpret_cast<const char*>(data), size));
  std::size_t commands = 0;
  for (std::string line; std::getline(script, line);) {
    const std::size_t first = line.find_first_not_of(" \t\r");
    commands += first != std::string::npos && line[first] != '#' ? 1 : 0;
    bench.session.take(line);
  }
  bench.session.takeEnd();
  try {
    for (;;) {
      bench.queue.WaitEvents();
    }
  } catch (const ProgramEnded&) {
    bench.session.programEnded();
  }
  require(bench.answers <= commands);
  return 0;
}
