// Whatever a unit sends, in whatever pieces, and whatever the main port is used for at that moment: the receive path keeps to its
// tables, keeps a buffer that can still become a frame, and answers with whole commands only.
#include "link/receive_path.h"

#include "bench.h"
#include "world.h"

namespace {

using namespace firmlane;
using fuzz::require;

constexpr const char* kProducts[] = {"WS", "VC"};
constexpr const char* kTargets[] = {"NewHubFlash", "DSPFlash",    "RF1Flash",    "RF2Flash",
                                    "FrontFlash",  "Front1Flash", "Front2Flash", "OldVRCFlash"};
constexpr std::int16_t kProgramming = 4;
constexpr std::size_t kLongestBuffer = 32767;

struct Bench : test::World {
  VirtualWire& wire = wires.add(1);
  CommandSet commands{mainPort, state, frmAuto, frmVRCAuto};
  ShortDelay delay{queue, state, form1};
  ReceivePath receive{host, mainPort, commands, delay, state, form1, frmAuto, frmVRCAuto};

  explicit Bench(fuzz::Input& input) {
    receive.FrameLength.fill();
    screen.answerOthers();
    state.ProductCode = kProducts[input.choice(std::size(kProducts))];
    state.FlashTarget = kTargets[input.choice(std::size(kTargets))];
    const std::uint8_t flags = input.byte();
    receive.MicMode = (flags & 1U) != 0;
    receive.ExpectFrameEnd = (flags & 2U) != 0;
    state.PortSearching = (flags & 4U) != 0;
    state.FrontStreaming = (flags & 8U) != 0;
    state.SerialStep = (flags & 16U) != 0 ? kProgramming : std::int16_t{0};
    state.FlashPhase = (flags & 32U) != 0 ? 1 : 0;
    mainPort.setNumber(1);
    mainPort.setSettings("57600,N,8,1");
    mainPort.Open();
    mainPort.setReceiveThreshold(1 + static_cast<int>(input.choice(9)));
  }

  /// Empty, or the start of a frame; acknowledges stay while they are expected.
  [[nodiscard]] bool bufferCanBecomeAFrame() const {
    const Bytes& buffer = receive.RxBuffer;
    return buffer.size() <= kLongestBuffer &&
           (buffer.empty() || buffer.front() == 0x02 || (receive.ExpectFrameEnd && buffer.front() == 'A') ||
            (state.FrontStreaming && buffer.front() == ' '));
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  Bench bench(input);
  const std::size_t most = 1 + input.choice(40);
  while (!input.empty()) {
    bench.wire.deliver(input.piece(most));
    bench.run(kMillisecond);
    require(bench.bufferCanBecomeAFrame());
  }
  bench.run(kSecond);
  require(bench.bufferCanBecomeAFrame());
  require(bench.state.FlashPhase >= 0 && bench.state.FlashPhase <= 3);
  const Bytes& sent = bench.wire.sent();
  require(sent.empty() || (sent.front() == 0x02 && sent.back() == 0x3E));
  return 0;
}
