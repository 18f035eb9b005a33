// Whatever a unit says while it is asked for its versions, in whatever pieces: the conversation goes on, keeps to its ring and
// tables, and ends with its window.
#include "link/version_readout.h"

#include "bench.h"
#include "world.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace firmlane;
  constexpr std::size_t kLongestBuffer = 32767;
  fuzz::Input input(data, size);
  test::World world;
  VersionReadout readout(world.versionPort, world.activity, world.state, world.frmVersion);
  world.screen.answerOthers();
  world.state.ProductCode = input.choice(2) == 0 ? "WS" : "VC";
  world.state.ComPort = 1;
  VirtualWire& wire = world.wires.add(1);
  const std::size_t most = 1 + input.choice(40);
  world.frmVersion.Load();
  while (!input.empty()) {
    wire.deliver(input.piece(most));
    world.run(20 * kMillisecond);
    fuzz::require(world.state.IdRxBuf.size() <= kLongestBuffer);
    fuzz::require(world.state.IdRxBuf.empty() || world.state.IdRxBuf.front() == '\x02');
  }
  world.run(kSecond);
  world.frmVersion.Unload();
  fuzz::require(!wire.isOpen());
  return 0;
}
