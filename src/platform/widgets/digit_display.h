// Three big digits side by side, each a picture of its own; what a digit display of the forms looks like.
#pragma once

#include <QWidget>
#include <array>
#include <string>

#include "platform/widgets/control_widgets.h"

namespace firmlane {

class DigitDisplay : public QWidget {
 public:
  struct Digit {
    std::string picture;
    bool visible;
  };

  explicit DigitDisplay(QWidget* parent = nullptr);

  /// Shows hundreds, tens and ones. A digit that is not visible leaves its place dark, so that the others stay where they are.
  void setDigits(const std::array<Digit, 3>& digits);

 private:
  std::array<PictureWidget*, 3> pictures_{};  // children of this widget
};

}  // namespace firmlane
