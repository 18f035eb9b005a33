#include "platform/widgets/switch_picture.h"

#include <QPainter>
#include <QPainterPath>
#include <QScreen>

namespace firmlane {

namespace {

// Drawn on a sheet of this size, which is scaled to the widget.
constexpr QSizeF kSheet(172, 74);
constexpr double kLines = 4.2;          // of text, high
constexpr double kMostOfScreen = 0.25;  // wide, however large the text

constexpr QRgb kCase = 0xff1d3445;
constexpr QRgb kDeep = 0xff0f222f;
constexpr QRgb kRim = 0xff6f8794;
constexpr QRgb kMetal = 0xffb9c6cc;
constexpr QRgb kGreen = 0xff58b586;
constexpr QRgb kAmber = 0xfff0a442;

void fill(QPainter& painter, QRgb colour, const QRectF& box, double radius) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(colour));
  painter.drawRoundedRect(box, radius, radius);
}

void drawUnit(QPainter& painter) {
  fill(painter, kRim, QRectF(14, 62, 16, 5), 2);
  fill(painter, kRim, QRectF(108, 62, 16, 5), 2);
  fill(painter, kRim, QRectF(0, 6, 138, 58), 8);
  fill(painter, kCase, QRectF(1.4, 7.4, 135.2, 55.2), 7);
  fill(painter, kDeep, QRectF(11, 18, 48, 34), 4);
  constexpr double kLevels[] = {7, 12, 17, 22};
  double left = 17;
  for (const double level : kLevels) {
    fill(painter, level > 20 ? kAmber : kGreen, QRectF(left, 46 - level, 6, level), 1.2);
    left += 9.6;
  }
  painter.setBrush(QColor(kMetal));
  painter.drawEllipse(QPointF(78, 35), 11, 11);
  painter.setPen(QPen(QColor(kCase), 3, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(78, 35), QPointF(84, 28));
}

/// "I" above, "O" below.
void drawSwitch(QPainter& painter, const QColor& accent) {
  painter.setPen(QPen(accent, 2.4));
  painter.setBrush(QColor(kDeep));
  painter.drawRoundedRect(QRectF(99, 13, 28, 44), 5, 5);
  fill(painter, kMetal, QRectF(103, 17, 20, 17), 2.5);
  fill(painter, kRim, QRectF(103, 36, 20, 17), 2.5);
  painter.setPen(QPen(QColor(kDeep), 2.4, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(113, 21.5), QPointF(113, 29.5));
  painter.setBrush(Qt::NoBrush);
  painter.drawEllipse(QPointF(113, 44.5), 4.4, 4.4);
}

/// From off to on.
void drawArrow(QPainter& painter, const QColor& accent) {
  QPainterPath way(QPointF(146, 50));
  way.cubicTo(QPointF(166, 46), QPointF(166, 28), QPointF(149, 23));
  painter.setPen(QPen(accent, 3.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  painter.drawPath(way);
  QPainterPath head(QPointF(155.5, 17.5));
  head.lineTo(QPointF(147.5, 22.5));
  head.lineTo(QPointF(153, 30));
  painter.drawPath(head);
}

}  // namespace

SwitchPicture::SwitchPicture(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setAccessibleName(tr("A unit whose power switch is turned off and on"));
}

QSize SwitchPicture::sizeHint() const {
  return kSheet.scaled(screen()->availableSize().width() * kMostOfScreen, fontMetrics().height() * kLines, Qt::KeepAspectRatio)
      .toSize();
}

void SwitchPicture::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(width() / kSheet.width(), height() / kSheet.height());
  const QColor accent = palette().color(QPalette::Highlight);
  drawUnit(painter);
  drawSwitch(painter, accent);
  drawArrow(painter, accent);
}

}  // namespace firmlane
