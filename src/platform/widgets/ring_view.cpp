#include "platform/widgets/ring_view.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/widgets/activity_colours.h"

namespace firmlane {

namespace {
constexpr int kWhole = 360 * 16;
constexpr int kTop = 90 * 16;
constexpr int kStep = 3 * 16;  // finer the eye does not see on a ring of this size
constexpr int kTurns = 12;
constexpr double kLines = 4.6;  // of text, across
constexpr double kThickness = 0.085;
}  // namespace

RingView::RingView(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("ring"));
  setAccessibleName(QStringLiteral("Time left"));
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize RingView::sizeHint() const {
  const int side = static_cast<int>(fontMetrics().height() * kLines);
  return {side, side};
}

void RingView::showShare(double share, const QString& middle) {
  const int steps = kWhole / kStep;
  take(0, static_cast<int>(std::lround(std::clamp(share, 0.0, 1.0) * steps)) * kStep, middle);
}

void RingView::showTurning(int step) { take(step % kTurns * (kWhole / kTurns), kWhole / 4, {}); }

void RingView::take(int start, int length, const QString& middle) {
  if (start != start_ || length != length_ || middle != middle_) {
    start_ = start;
    length_ = length;
    if (std::exchange(middle_, middle) != middle) {
      setAccessibleDescription(middle);
    }
    update();
  }
}

void RingView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const ActivityColours colours(palette());
  const double thickness = width() * kThickness;
  const QRectF circle = QRectF(rect()).adjusted(thickness, thickness, -thickness, -thickness);
  painter.setPen(QPen(colours.faint(0.13), thickness));
  painter.drawEllipse(circle);
  if (length_ > 0) {
    painter.setPen(QPen(colours.accent, thickness, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(circle, kTop - start_, -length_);
  }
  if (!middle_.isEmpty()) {
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.35);
    large.setBold(true);
    painter.setFont(large);
    painter.setPen(colours.text);
    painter.drawText(rect(), Qt::AlignCenter, middle_);
  }
}

}  // namespace firmlane
