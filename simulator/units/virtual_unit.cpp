#include "units/virtual_unit.h"

#include <algorithm>

namespace firmlane::sim {

namespace {

const UnitModel& modelNamed(std::string_view name) {
  const UnitModel* model = findUnitModel(name);
  if (model == nullptr) {
    throw Failure(failure_number::kInvalidArgument, "There is no unit model " + std::string(name));
  }
  return *model;
}

}  // namespace

VirtualUnit::VirtualUnit(VirtualTime& time, VirtualWire& wire, std::string_view model)
    : time_(time), wire_(wire), unit(modelNamed(model), *this, *this) {
  wire_.heard = [this](std::uint8_t byte) {
    unit.hear(byte);
    if (onHeard) {
      onHeard();
    }
  };
}

VirtualUnit::~VirtualUnit() { wire_.heard = nullptr; }

void VirtualUnit::send(ByteSpan bytes, int baud) {
  if (intercept && intercept({bytes.begin(), bytes.end()}, baud)) {
    return;
  }
  if (!arriveWhole) {
    wire_.send(bytes, baud);
    return;
  }
  constexpr int kBitsPerByte = 10;
  freeAt_ = std::max(freeAt_, time_.now()) + static_cast<Micros>(bytes.size()) * kBitsPerByte * kSecond / baud;
  time_.at(freeAt_, [&wire = wire_, baud, copy = Bytes(bytes.begin(), bytes.end())] {
    if (wire.settings() && wire.settings()->baud == baud) {
      wire.deliver(copy);
    }
  });
}

}  // namespace firmlane::sim
