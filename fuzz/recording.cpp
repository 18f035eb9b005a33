// Whatever the bytes, reading a record ends, refuses with a line or gives entries in their order, and playing them ends too.
#include "replay/recording.h"

#include <deque>

#include "bench.h"
#include "platform/failure.h"
#include "replay/replay.h"
#include "replay/script.h"

namespace {

using namespace firmlane;
using fuzz::require;
using namespace firmlane::sim;

/// A world that does at once whatever the record says, and whose ports are now as it says and now are not.
class Obedient : public ReplayStage {
 public:
  [[nodiscard]] Micros now() const override { return now_; }
  bool takes(const Entry& entry) override { return (now_ / kSecond + static_cast<Micros>(entry.line)) % 3 != 0; }
  [[nodiscard]] std::string movedOn(int /*port*/) const override { return now_ / kSecond % 4 == 3 ? "closed 3" : ""; }
  void after(Micros /*span*/, std::function<void()> action) override { planned_.push_back(std::move(action)); }
  std::optional<std::string> perform(const Entry& /*entry*/) override { return std::nullopt; }
  bool runOne() {
    now_ += kSecond;
    if (planned_.empty()) {
      return false;
    }
    const auto action = std::move(planned_.front());
    planned_.pop_front();
    action();
    return true;
  }

 private:
  Micros now_ = 0;
  std::deque<std::function<void()>> planned_;
};

void play(const Recording& recording, ReplayPart part) {
  Obedient world;
  Replay replay(recording, world, part);
  replay.start();
  for (std::size_t steps = 0; !replay.over(); ++steps) {
    require(steps < 10 * recording.entries.size() + 10);
    const Entry& entry = *replay.next();
    static_cast<void>(replay.bodyBehind(entry));
    if (entry.kind == "sent" && entry.bytes.size > 0) {
      replay.hear(entry.port(), entry.bytes.first);
      replay.hear(entry.port(), Bytes(1, 0));
    } else if (entry.kind == "get") {
      replay.observeRequest(entry.words.front());
    }
    replay.look();
    if (!world.runOne() && !replay.over()) {
      replay.observe(entry.text);
    }
    if (steps > recording.entries.size()) {
      replay.end("enough");
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    const Recording recording = readRecording({reinterpret_cast<const char*>(data), size});
    for (std::size_t i = 1; i < recording.entries.size(); ++i) {
      require(recording.entries[i - 1].time <= recording.entries[i].time);
    }
    static_cast<void>(consoleScript(recording));
    play(recording, ReplayPart::Everything);
    play(recording, ReplayPart::LineAndWeb);
  } catch (const Failure& failure) {
    require(failure.description().starts_with("Line "));
  }
  return 0;
}
