// A display of three big digits for a number from 0 to 100. It is no form and stands on none; a screen draws the pictures that it
// names.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace firmlane {

class Counter1 {
 public:
  struct ImageHolder {
    std::string Picture;
    bool Visible = true;
  };

  /// Hundreds; its picture never changes.
  ImageHolder imgCount2{.Picture = "digit1"};
  /// Tens.
  ImageHolder imgCount1{.Picture = "digit0"};
  /// Ones.
  ImageHolder imgCount0{.Picture = "digit0"};
  /// The pictures of the ten digits.
  std::array<std::string, 10> Numbers = {"digit0", "digit1", "digit2", "digit3", "digit4",
                                         "digit5", "digit6", "digit7", "digit8", "digit9"};

  /// Shows `value`; one outside 0 to 100 is taken to the nearer end.
  void SetBigdigits(std::int16_t value);
};

}  // namespace firmlane
