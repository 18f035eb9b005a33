#include "platform/widgets/layout_parts.h"

namespace firmlane {

namespace {
constexpr QSize kWizardSize(760, 540);
constexpr int kCoverWidth = 164;
}  // namespace

void frameWizard(FormWindow& window, QWidget* cover, QLayout* page, QLayout* buttons) {
  cover->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
  cover->setFixedWidth(kCoverWidth);
  page->setContentsMargins(kMargin + 6, kMargin, kMargin, kMargin);
  buttons->setContentsMargins(kMargin, kSpacing + 2, kMargin, kMargin - 4);

  auto* upper = spaced(new QHBoxLayout);
  upper->setSpacing(0);
  upper->addWidget(cover);
  upper->addLayout(page, 1);

  auto* whole = spaced(new QVBoxLayout(&window));
  whole->setSpacing(0);
  whole->addLayout(upper, 1);
  whole->addWidget(line());
  whole->addLayout(buttons);
  window.resize(kWizardSize);
}

}  // namespace firmlane
