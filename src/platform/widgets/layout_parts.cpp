#include "platform/widgets/layout_parts.h"

namespace firmlane {

namespace {
constexpr QSize kWizardSize(780, 560);
constexpr int kCoverWidth = 164;
constexpr int kPageLetters = 74;  // the page is at least so many letters wide, so that set lines stay lines
}  // namespace

void frameWizard(FormWindow& window, PictureWidget& cover, QVBoxLayout* page, QLayout* buttons) {
  cover.setFit(PictureFit::Covering);
  cover.setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Ignored);
  cover.setFixedWidth(kCoverWidth);
  page->addStrut(kPageLetters * window.fontMetrics().averageCharWidth());
  page->setContentsMargins(kMargin + 6, kMargin + 2, kMargin + 6, kMargin);
  buttons->setContentsMargins(kMargin, kSpacing + 2, kMargin + 6, kMargin - 4);

  auto* paper = new QWidget(&window);  // of this window from the start: its widgets keep their turn for Tab
  paper->setBackgroundRole(QPalette::Base);
  paper->setAutoFillBackground(true);
  paper->setLayout(page);

  auto* upper = spaced(new QHBoxLayout);
  upper->setSpacing(0);
  upper->addWidget(&cover);
  upper->addWidget(paper, 1);

  auto* whole = spaced(new QVBoxLayout(&window));
  whole->setSpacing(0);
  whole->addLayout(upper, 1);
  whole->addWidget(line());
  whole->addLayout(buttons);
  window.setUsualSize(kWizardSize);
}

}  // namespace firmlane
