#include "platform/widgets/ring_view.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

#include "platform/widgets/looks.h"

namespace firmlane {

namespace {
constexpr int kWhole = 360 * 16;
constexpr int kTop = 90 * 16;
constexpr int kStep = 3 * 16;  // finer the eye does not see on a ring of this size
constexpr int kTurns = 12;
constexpr double kThickness = 0.085;
}  // namespace

RingView::RingView(double lines, QWidget* parent) : QWidget(parent), lines_(lines) {
  setObjectName(QStringLiteral("ring"));
  setAccessibleName(QStringLiteral("Time left"));
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize RingView::sizeHint() const {
  const int side = static_cast<int>(fontMetrics().height() * lines_);
  return {side, side};
}

void RingView::showShare(double share, const QString& middle) {
  const int steps = kWhole / kStep;
  take(0, static_cast<int>(std::lround(std::clamp(share, 0.0, 1.0) * steps)) * kStep, middle);
}

void RingView::showTurning(int step) { take(step % kTurns * (kWhole / kTurns), kWhole / 4, {}); }

void RingView::take(int start, int length, const QString& text) {
  if (length * length_ == 0 || start - start_ > kWhole / 4) {
    update();
  } else {
    update(arcRect(start_, start));
    update(arcRect(start_ + length_, start + length));
  }
  if (text != middle_) {
    update(middle());
    setAccessibleDescription(text);
  }
  start_ = start;
  length_ = length;
  middle_ = text;
}

double RingView::thickness() const { return width() * kThickness; }

QRect RingView::middle() const {
  const double edge = thickness() * 1.5;  // wide writing reaches the ring
  return QRectF(rect()).adjusted(edge, edge, -edge, -edge).toAlignedRect();
}

QRectF RingView::circle() const { return QRectF(rect()).adjusted(thickness(), thickness(), -thickness(), -thickness()); }

/// What has to be drawn when an end of the arc moves so: little, and little to draw costs little.
QRect RingView::arcRect(int from, int to) const {
  if (from == to) {
    return {};
  }
  QPainterPath way;
  way.arcMoveTo(circle(), (kTop - from) / 16.0);
  way.arcTo(circle(), (kTop - from) / 16.0, (from - to) / 16.0);
  return way.boundingRect().adjusted(-thickness(), -thickness(), thickness(), thickness()).toAlignedRect();
}

void RingView::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(faint(palette(), 0.16), thickness()));
  painter.drawEllipse(circle());
  if (length_ > 0) {
    painter.setPen(QPen(palette().color(QPalette::Highlight), thickness(), Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(circle(), kTop - start_, -length_);
  }
  if (!middle_.isEmpty() && event->region().intersects(middle())) {
    QFont large = fontOf(TypeSize::Heading);
    large.setBold(true);
    painter.setFont(large);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(rect(), Qt::AlignCenter, middle_);
  }
}

}  // namespace firmlane
