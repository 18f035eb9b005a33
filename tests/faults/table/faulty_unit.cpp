#include "faulty_unit.h"

namespace firmlane::test {

namespace {
constexpr std::uint8_t kReport = 31;
constexpr std::size_t kSubCodeAt = 5;
}  // namespace

FaultyUnit::FaultyUnit(VirtualTime& time, VirtualWire& wire, const std::string& model)
    : time_(time), wire_(wire), unit(*sim::findUnitModel(model), *this, *this) {
  wire_.heard = [this](std::uint8_t byte) {
    unit.hear(byte);
    if (onHeard) {
      onHeard();
    }
  };
}

FaultyUnit::~FaultyUnit() { wire_.heard = nullptr; }

void FaultyUnit::spoilNext(std::function<bool(const Bytes&)> concerns, Spoiler spoiler) {
  concerns_ = std::move(concerns);
  spoiler_ = std::move(spoiler);
}

void FaultyUnit::report(int subCode) {
  const auto code = static_cast<std::uint8_t>(subCode);
  say(sim::unitFrame(sim::FrameEnd::Boot, 0, kReport, ByteSpan(&code, 1)));
}

void FaultyUnit::send(ByteSpan bytes, int baud) {
  const Bytes frame(bytes.begin(), bytes.end());
  if (!spoiler_ || !concerns_(frame)) {
    wire_.send(frame, baud);
    return;
  }
  const Spoiler spoiler = std::exchange(spoiler_, nullptr);
  for (const Arrival& arrival : spoiler(frame)) {
    time_.at(std::max(arrival.at, time_.now()), [this, arrival, baud] { wire_.send(arrival.bytes, baud); });
  }
}

int subCodeOf(const Bytes& frame) { return frame.size() > kSubCodeAt ? frame[kSubCodeAt] : 0; }

}  // namespace firmlane::test
