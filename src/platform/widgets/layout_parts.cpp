#include "platform/widgets/layout_parts.h"

#include <QPaintEvent>
#include <QPainter>
#include <QScreen>
#include <QScrollArea>
#include <algorithm>

namespace firmlane {

namespace {
constexpr int kCoverWidth = 164;
constexpr int kCoverHeight = 515;  // at which the cover has that width
constexpr int kLeastPage = 160;    // height of the page that is seen in the smallest of windows
constexpr int kPageLetters = 80;   // the page is at least so many letters wide, so that set lines stay lines

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

QWidget* choices(FormWindow& window, const char* group, std::initializer_list<std::string> options) {
  auto* together = new ChoiceGroup(QLatin1String(group), &window);
  auto* layout = spaced(new QVBoxLayout(together));
  for (const std::string& option : options) {
    layout->addWidget(written(window[option], TypeSize::Text));
  }
  return together;
}

void frameWizard(FormWindow& window, PictureWidget& cover, QVBoxLayout* page, QHBoxLayout* buttons) {
  cover.followHeight(kCoverWidth, kCoverHeight);
  page->setContentsMargins(kMargin + 6, kMargin + 2, kMargin + 6, kMargin);
  buttons->setContentsMargins(kMargin, kSpacing + 2, kMargin + 6, kMargin - 4);

  auto* paper = new Paper(&window);  // of this window from the start: its widgets keep their turn for Tab
  paper->setLayout(page);
  auto* scroller = new QScrollArea(&window);
  scroller->setWidget(paper);
  scroller->setWidgetResizable(true);
  scroller->setFrameShape(QFrame::NoFrame);
  scroller->setFocusPolicy(Qt::NoFocus);
  scroller->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  const int room = window.screen()->availableSize().width() - kCoverWidth - 4 * kMargin;
  scroller->setMinimumSize(std::min(kPageLetters * window.fontMetrics().averageCharWidth() + 2 * kMargin, room), kLeastPage);
  window.setPage(*scroller);

  auto* upper = spaced(new QHBoxLayout);
  upper->setSpacing(0);
  upper->addWidget(&cover);
  upper->addWidget(scroller, 1);

  // Behind the page, also for those who have the window read out.
  auto* foot = new QWidget(&window);
  foot->setLayout(buttons);
  auto* whole = spaced(new QVBoxLayout(&window));
  whole->setSpacing(0);
  whole->addLayout(upper, 1);
  whole->addWidget(line());
  whole->addWidget(foot);
  window.setUsualSize(kWizardSize);
}

}  // namespace firmlane
