#include "platform/widgets/layout_parts.h"

#include <QPaintEvent>
#include <QPainter>
#include <QScreen>
#include <algorithm>

namespace firmlane {

namespace {
constexpr int kCoverWidth = 164;
constexpr int kPageLetters = 80;  // the page is at least so many letters wide, so that set lines stay lines

/// What the page stands on: white paper, but with a dark palette the window's own ground. There the outlines of boxes and bars
/// are drawn for that and vanish on the darker ground of fields.
class Paper : public QWidget {
 public:
  using QWidget::QWidget;

 protected:
  void paintEvent(QPaintEvent* event) override {
    const bool dark = palette().color(QPalette::Window).lightness() < palette().color(QPalette::WindowText).lightness();
    QPainter(this).fillRect(event->rect(), palette().brush(dark ? QPalette::Window : QPalette::Base));
  }
};

}  // namespace

void frameWizard(FormWindow& window, PictureWidget& cover, QVBoxLayout* page, QLayout* buttons) {
  cover.setFit(PictureFit::Covering);
  cover.setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Ignored);
  cover.setFixedWidth(kCoverWidth);
  const int room = window.screen()->availableSize().width() - kCoverWidth - 4 * kMargin;
  page->addStrut(std::min(kPageLetters * window.fontMetrics().averageCharWidth(), room));
  page->setContentsMargins(kMargin + 6, kMargin + 2, kMargin + 6, kMargin);
  buttons->setContentsMargins(kMargin, kSpacing + 2, kMargin + 6, kMargin - 4);

  auto* paper = new Paper(&window);  // of this window from the start: its widgets keep their turn for Tab
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
