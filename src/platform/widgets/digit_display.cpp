#include "platform/widgets/digit_display.h"

#include <QHBoxLayout>

namespace firmlane {

DigitDisplay::DigitDisplay(QWidget* parent) : QWidget(parent) {
  auto* row = new QHBoxLayout(this);  // NOLINT(cppcoreguidelines-owning-memory): this widget owns its layout
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(0);
  for (PictureWidget*& picture : pictures_) {
    picture = new PictureWidget(this);  // NOLINT(cppcoreguidelines-owning-memory): and its children
    QSizePolicy keepsItsPlace = picture->sizePolicy();
    keepsItsPlace.setRetainSizeWhenHidden(true);
    picture->setSizePolicy(keepsItsPlace);
    row->addWidget(picture);
  }
}

void DigitDisplay::setDigits(const std::array<Digit, 3>& digits) {
  for (std::size_t i = 0; i < digits.size(); ++i) {
    pictures_[i]->setPicture(digits[i].picture);
    pictures_[i]->setVisible(digits[i].visible);
  }
}

}  // namespace firmlane
