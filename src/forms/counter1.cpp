#include "forms/counter1.h"

#include <algorithm>

namespace firmlane {

void Counter1::SetBigdigits(std::int16_t value) {
  constexpr int kBase = 10;
  constexpr int kHighest = 100;
  const int shown = std::clamp<int>(value, 0, kHighest);
  const bool hundred = shown == kHighest;
  imgCount1.Visible = shown >= kBase;
  imgCount2.Visible = hundred;
  imgCount1.Picture = Numbers.at(static_cast<std::size_t>(hundred ? 0 : shown / kBase));
  imgCount0.Picture = Numbers.at(static_cast<std::size_t>(shown % kBase));
}

}  // namespace firmlane
