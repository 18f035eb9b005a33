// How long a whole update of five processors takes in virtual time: the real program, a simulated receiver, a user who follows
// the texts. Images of 64 KB, but for the front panel, which takes at most 8 KB.
#include <chrono>
#include <cstdio>

#include "app/program.h"
#include "player/player.h"
#include "units/virtual_unit.h"
#include "world.h"

using namespace firmlane;

int main() {
  const auto start = std::chrono::steady_clock::now();
  test::Ground ground;
  sim::VirtualUnit bench(ground.time, ground.wires.add(1), "lwx52");
  bench.unit.startRunning();
  for (const sim::ProcessorModel& processor : bench.unit.state().model->processors) {
    const bool front = processor.loader == sim::LoaderKind::Front;
    sim::writeImage(ground.directory.path(), processor.image, {3, 1, 0}, front ? 8190 : 64 * 1024);
  }
  Program program({.queue = ground.queue,
                   .screen = ground.screen,
                   .mainDriver = ground.mainDriver,
                   .versionDriver = ground.versionDriver,
                   .http = ground.http,
                   .desktop = ground.desktop,
                   .files = ground.files,
                   .servers = {}});
  Player player(program.host(), [&bench](bool on) { on ? bench.unit.powerOn() : bench.unit.powerOff(); }, {.online = false});
  Player::Outcome outcome = Player::Outcome::Playing;
  const std::function<void()> look = [&] {
    outcome = player.step();
    if (outcome == Player::Outcome::Playing) {
      ground.after(300 * kMillisecond, look);
    } else {
      ground.queue.post([] { throw ProgramEnded{}; });
    }
  };
  ground.after(kSecond, look);
  program.start();
  program.run();
  const std::chrono::duration<double> real = std::chrono::steady_clock::now() - start;
  std::printf("%s: %.0f s of virtual time in %.2f s\n", outcome == Player::Outcome::Succeeded ? "updated" : "NOT updated",
              static_cast<double>(ground.time.now()) / kSecond, real.count());
  return outcome == Player::Outcome::Succeeded ? 0 : 1;
}
