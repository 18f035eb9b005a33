#include "platform/widgets/layout_parts.h"

#include <QPaintEvent>
#include <QPainter>
#include <QScreen>
#include <QScrollArea>
#include <algorithm>
#include <utility>

namespace firmlane {

namespace {
constexpr int kCoverWidth = 164;
constexpr int kCoverHeight = 515;  // at which the cover has that width
constexpr int kFrame = 72;         // what a window's frame and a picture that is larger than usual may take of the screen's width
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

/// The part of a window that scrolls. It wants to be as large as what stands on it, and needs no more than the screen has.
class Scroller : public QScrollArea {
 public:
  /// `beside`: the width in the window that is taken by others; `least`: the page is at least so wide where the screen is.
  Scroller(FormWindow& window, QWidget* page, int beside, int least)
      : QScrollArea(&window), most_(window.screen()->availableSize().width() - beside), least_(least) {
    setWidget(page);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    window.setPage(*this);
  }
  [[nodiscard]] QSize sizeHint() const override {
    const QSize hint = widget()->sizeHint();
    return minimumSizeHint().expandedTo({std::min(most_, hint.width()), hint.height()});
  }
  [[nodiscard]] QSize minimumSizeHint() const override {
    const QSize page = widget()->layout()->totalMinimumSize();
    return {std::min(most_, std::max(least_, page.width())), std::min(kLeastPage, page.height())};
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched == widget() && event->type() == QEvent::LayoutRequest) {
      updateGeometry();
    }
    return QScrollArea::eventFilter(watched, event);
  }

 private:
  int most_;
  int least_;
};

/// Above the foot, which comes behind it also for those who have the window read out.
void frame(FormWindow& window, QLayout* upper, bool parted, ButtonRow* buttons) {
  auto* whole = spaced(new QVBoxLayout(&window));
  whole->setSpacing(0);
  whole->addLayout(upper, 1);
  if (parted) {
    whole->addWidget(line());
  }
  if (buttons != nullptr) {
    buttons->setSpacing(kSpacing);
    auto* foot = new QWidget(&window);
    foot->setLayout(buttons);
    whole->addWidget(foot);
  }
}

}  // namespace

QWidget* choices(FormWindow& window, const char* group, std::initializer_list<std::string> options) {
  auto* together = new ChoiceGroup(QLatin1String(group), &window);
  auto* layout = spaced(new QVBoxLayout(together));
  for (const std::string& option : options) {
    layout->addWidget(written(window[option], TypeSize::Text));
  }
  return together;
}

void frameWizard(FormWindow& window, PictureWidget& cover, QVBoxLayout* page, ButtonRow* buttons) {
  cover.followHeight(kCoverWidth, kCoverHeight);
  page->setContentsMargins(kMargin + 6, kMargin + 2, kMargin + 6, kMargin);
  buttons->setContentsMargins(kMargin, kSpacing + 2, kMargin + 6, kMargin - 4);

  auto* paper = new Paper(&window);  // of this window from the start: its widgets keep their turn for Tab
  paper->setLayout(page);
  auto* upper = spaced(new QHBoxLayout);
  upper->setSpacing(0);
  upper->addWidget(&cover);
  upper->addWidget(
      new Scroller(window, paper, kCoverWidth + kFrame, kPageLetters * window.fontMetrics().averageCharWidth() + 2 * kMargin), 1);
  frame(window, upper, true, buttons);
  window.setUsualSize(kWizardSize);
}

void frameDialog(FormWindow& window, QVBoxLayout* page, ButtonRow* buttons, bool parted) {
  page->setContentsMargins(kMargin, kMargin, kMargin, kSpacing + 2);
  if (buttons != nullptr) {
    buttons->setContentsMargins(kMargin, parted ? kSpacing + 2 : 0, kMargin, kMargin);
  }
  auto* paper = new QWidget(&window);
  paper->setLayout(page);
  auto* upper = spaced(new QHBoxLayout);
  upper->addWidget(new Scroller(window, paper, kFrame, 0));
  frame(window, upper, parted, buttons);
}

}  // namespace firmlane
