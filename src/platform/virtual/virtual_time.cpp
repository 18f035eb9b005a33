#include "platform/virtual/virtual_time.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace firmlane {

std::string VirtualTime::timeOfDay() const {
  const Micros seconds = now_ / kSecond;
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%02d:%02d:%02d", static_cast<int>(seconds / 3600 % 24),
                static_cast<int>(seconds / 60 % 60), static_cast<int>(seconds % 60));
  return text.data();
}

void VirtualTime::poll() { runDue(); }

void VirtualTime::sleep(Micros until) {
  const Micros next = actions_.empty() ? kForever : actions_.begin()->first;
  const Micros wake = std::min(until, next);
  if (wake == kForever) {
    throw NothingCanHappen();
  }
  now_ = std::max(now_, wake);
  if (now_ > end_) {
    throw NothingCanHappen();
  }
  runDue();
}

void VirtualTime::at(Micros time, Action action) { actions_.emplace(std::max(time, now_), std::move(action)); }

void VirtualTime::runDue() {
  while (!actions_.empty() && actions_.begin()->first <= now_) {
    auto node = actions_.extract(actions_.begin());
    node.mapped()();
  }
}

}  // namespace firmlane
