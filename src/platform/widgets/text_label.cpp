#include "platform/widgets/text_label.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>
#include <algorithm>

#include "platform/widgets/page_text.h"

namespace firmlane {

namespace {
// The width at which a page's text is taken to stand before its window has one.
constexpr int kPageWidth = 480;
constexpr int kLeastWidth = 160;
}  // namespace

bool isClickOn(const QWidget& widget, const QMouseEvent& event) {
  return event.button() == Qt::LeftButton && widget.rect().contains(event.position().toPoint());
}

TextLabel::TextLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
  setAlignment(Qt::AlignLeft | Qt::AlignTop);
}

TextLabel::~TextLabel() = default;

void TextLabel::setClickable(bool clickable) {
  if (clickable == clickable_) {
    return;
  }
  clickable_ = clickable;
  setCursor(clickable ? Qt::PointingHandCursor : Qt::ArrowCursor);
  setFocusPolicy(clickable ? Qt::StrongFocus : Qt::NoFocus);
  setForegroundRole(clickable ? QPalette::Link : QPalette::WindowText);
  QFont underlined = font();
  underlined.setUnderline(clickable);
  setFont(underlined);
}

void TextLabel::becomePageText() {
  pageText_ = true;
  updateGeometry();
}

const PageText& TextLabel::setIn(int width) const {
  if (!set_ || set_->width() != width || setText_ != text()) {
    setText_ = text();
    set_ = std::make_unique<PageText>(setText_, width);
  }
  return *set_;
}

QSize TextLabel::sizeHint() const { return pageText_ ? QSize(kPageWidth, heightForWidth(kPageWidth)) : QLabel::sizeHint(); }

QSize TextLabel::minimumSizeHint() const { return pageText_ ? QSize(kLeastWidth, 0) : QLabel::minimumSizeHint(); }

int TextLabel::heightForWidth(int width) const {
  if (!pageText_) {
    return QLabel::heightForWidth(width);
  }
  const QMargins margins = contentsMargins();
  return setIn(std::max(1, width - margins.left() - margins.right())).height() + margins.top() + margins.bottom();
}

void TextLabel::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  if (pageText_) {
    setIn(contentsRect().width()).paint(painter, contentsRect().topLeft(), palette());
  } else {
    painter.end();
    QLabel::paintEvent(event);
    painter.begin(this);
  }
  if (hasFocus()) {
    QStyleOptionFocusRect option;
    option.initFrom(this);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
  }
}

void TextLabel::mouseReleaseEvent(QMouseEvent* event) {
  if (clickable_ && clicked && isClickOn(*this, *event)) {
    clicked();
    return;
  }
  QLabel::mouseReleaseEvent(event);
}

void TextLabel::keyPressEvent(QKeyEvent* event) {
  if (clickable_ && clicked &&
      (event->key() == Qt::Key_Space || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
    clicked();
    return;
  }
  QLabel::keyPressEvent(event);
}

}  // namespace firmlane
