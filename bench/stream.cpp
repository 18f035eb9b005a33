// How busy a stream keeps the line: time taken / (bytes x 10 / baud), for each manner of sending. In virtual time at 9600, and in
// real time over a pseudo-terminal at 19200, there with the processor time that it costs (the far end's reading included),
// without a record and with one.
#include <sys/resource.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <cstdio>

#include "images/image_sender.h"
#include "platform/qt/qt_platform.h"
#include "pty/pseudo_terminal.h"
#include "world.h"

using namespace firmlane;

namespace {

constexpr std::size_t kImage = 24'000;
constexpr int kBitsPerByte = 10;

/// One way of sending, and how many bytes a file of kImage bytes puts on the line.
struct Manner {
  const char* name;
  bool records;
  const char* productCode;
  std::size_t onLine;
};
constexpr Manner kManners[] = {{"DumpFile2, plain", false, "WS", kImage + 2},
                               {"DumpFile2, seven-bit", false, "VC", 2 * kImage + 2},
                               {"DumpFile3", true, "WS", kImage}};

double processorSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& t) { return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6; };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void send(ImageSender& sender, RunState& state, const Manner& manner, const std::string& path) {
  state.ProductCode = manner.productCode;
  if (manner.records) {
    sender.DumpFile3(path);
  } else {
    sender.DumpFile2(path);
  }
}

void print(const Manner& manner, int baud, Micros span, double processor) {
  const double line = static_cast<double>(manner.onLine) * kBitsPerByte / baud;
  const double taken = static_cast<double>(span) / kSecond;
  std::printf("  %-22s %6zu bytes at %5d: %7.2f s, ratio %.4f", manner.name, manner.onLine, baud, taken, taken / line);
  if (processor > 0) {
    std::printf(", processor %.1f %%", 100 * processor / taken);
  }
  std::printf("\n");
}

void virtualTime() {
  for (const Manner& manner : kManners) {
    test::World world;
    world.directory.write("image", Bytes(kImage, 0x55));
    world.wires.add(1);
    bool expectFrameEnd = false;
    ImageSender sender(world.host, world.mainPort, world.supervision, world.wizard, world.state, world.form1, expectFrameEnd);
    world.mainPort.setSettings("9600,N,8,1");
    world.mainPort.Open();
    const Micros start = world.time.now();
    send(sender, world.state, manner, world.files.path("image"));
    print(manner, 9600, world.time.now() - start, 0);
  }
}

void realTime(bool recorded) {
  test::World forms;  // for its forms alone: nothing of them is timed
  forms.directory.write("image", Bytes(kImage, 0x55));
  for (const Manner& manner : kManners) {
    sim::PseudoTerminal terminal;
    QSocketNotifier reader(terminal.descriptor(), QSocketNotifier::Read);
    QObject::connect(&reader, &QSocketNotifier::activated, [&terminal] { terminal.read(); });
    QtPlatform platform({.directory = forms.directory.path(), .ports = {{1, terminal.path()}}});
    Recorder& recorder = recorded ? platform.record : noRecorder();
    ScriptedScreen screen(forms.time);
    FormHost host(platform.queue, screen, recorder);
    RunState state;
    Form1 form1(host);
    FrmAuto frmAuto(host);
    FrmVRCAuto frmVRCAuto(host);
    WizardInCharge wizard(state, form1, frmAuto, frmVRCAuto);
    Activity activity(platform.queue.clock());
    Supervision supervision(platform.queue, state, form1, wizard, activity);
    SerialPort port(platform.queue, platform.mainDriver, recorder);
    bool expectFrameEnd = false;
    ImageSender sender(host, port, supervision, wizard, state, form1, expectFrameEnd);
    port.setSettings("19200,N,8,1");
    port.Open();
    const Micros start = platform.source.now();
    const double processor = processorSeconds();
    send(sender, state, manner, forms.files.path("image"));
    print(manner, 19200, platform.source.now() - start, processorSeconds() - processor);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  std::printf("virtual time\n");
  virtualTime();
  std::printf("real time, pseudo-terminal, without a record\n");
  realTime(false);
  std::printf("the same with a record\n");
  realTime(true);
  return 0;
}
