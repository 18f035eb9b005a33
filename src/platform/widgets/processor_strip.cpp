#include "platform/widgets/processor_strip.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <utility>

#include "platform/widgets/looks.h"

namespace firmlane {

namespace {

constexpr double kMarkLines = 1.75;  // of text, across
constexpr double kGapLines = 0.35;
constexpr int kMostColumn = 9;  // times the height of a line

QString arrow() { return QStringLiteral(" \u2192 "); }
constexpr double kOutline = 1.6;
constexpr double kStroke = 2.2;
constexpr double kArm = 0.2;  // of a tick or cross, in circles

void drawDisc(QPainter& painter, const QRectF& circle, const QColor& colour) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  painter.drawEllipse(circle);
  painter.setBrush(Qt::NoBrush);
}

void drawOutline(QPainter& painter, const QRectF& circle, const QPen& pen) {
  painter.setPen(pen);
  painter.setBrush(Qt::NoBrush);
  painter.drawEllipse(circle.adjusted(1, 1, -1, -1));
}

void drawTick(QPainter& painter, const QRectF& circle) {
  const double arm = circle.width() * kArm;
  QPainterPath tick(circle.center() + QPointF(-arm * 1.15, 0.1 * arm));
  tick.lineTo(circle.center() + QPointF(-arm * 0.25, arm));
  tick.lineTo(circle.center() + QPointF(arm * 1.25, -arm * 0.85));
  painter.setPen(QPen(Qt::white, kStroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPath(tick);
}

void drawCross(QPainter& painter, const QRectF& circle) {
  const double arm = circle.width() * kArm;
  painter.setPen(QPen(Qt::white, kStroke, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(circle.center() + QPointF(-arm, -arm), circle.center() + QPointF(arm, arm));
  painter.drawLine(circle.center() + QPointF(-arm, arm), circle.center() + QPointF(arm, -arm));
}

void drawNumber(QPainter& painter, const QRectF& circle, int number, const QColor& colour) {
  painter.save();
  QFont bold = painter.font();
  bold.setBold(true);
  painter.setFont(bold);
  painter.setPen(colour);
  painter.drawText(circle, Qt::AlignCenter, QString::number(number));
  painter.restore();
}

QString versionsOf(const ProcessorReport& processor) {
  const QString before = QString::fromStdString(processor.before);
  const bool meant = processor.state != ProcessorState::NotSelected;
  const QString after = QString::fromStdString(!processor.after.empty() ? processor.after : meant ? processor.wanted : "");
  if (before.isEmpty() || after.isEmpty() || before == after) {
    return after.isEmpty() ? before : after;
  }
  return before + arrow() + after;
}

QString spoken(const ProcessorReport& processor) {
  QString text =
      QStringLiteral("%1 %2: %3").arg(processor.number).arg(QString::fromStdString(processor.name), nameOf(processor.state));
  if (!processor.before.empty()) {
    text += QStringLiteral(", version before %1").arg(QString::fromStdString(processor.before));
  }
  const std::string& after = processor.after.empty() ? processor.wanted : processor.after;
  if (!after.empty() && processor.state != ProcessorState::NotSelected) {
    text += QStringLiteral(", after %1").arg(QString::fromStdString(after));
  }
  return text;
}

}  // namespace

ProcessorStrip::ProcessorStrip(QWidget* parent) : QWidget(parent) {
  QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
  setFont(fontOf(TypeSize::Hint));
  setAccessibleName(QStringLiteral("Processors of the unit"));
}

void ProcessorStrip::tell(const std::vector<ProcessorReport>& processors) {
  if (processors == processors_) {
    return;
  }
  processors_ = processors;
  QStringList texts;
  for (const ProcessorReport& processor : processors_) {
    texts << spoken(processor);
  }
  setAccessibleDescription(texts.join(QStringLiteral("; ")));
  updateGeometry();
  update();
}

double ProcessorStrip::mark() const { return fontMetrics().height() * kMarkLines; }

int ProcessorStrip::columnWidth(bool sideBySide) const {
  int widest = static_cast<int>(mark() * 2);
  for (const ProcessorReport& processor : processors_) {
    const QString versions = versionsOf(processor);
    const QString last = versions.section(arrow(), -1);
    const QString shown = sideBySide || last == versions ? versions : arrow().trimmed() + QLatin1Char(' ') + last;
    widest = std::max(widest, fontMetrics().horizontalAdvance(shown) + fontMetrics().height() / 2);
  }
  return widest;
}

bool ProcessorStrip::isNarrow(int width) const { return width < columnWidth(true) * static_cast<int>(processors_.size()); }

int ProcessorStrip::heightForWidth(int width) const {
  return static_cast<int>(mark() + fontMetrics().height() * ((isNarrow(width) ? 3 : 2) + kGapLines)) + 2;
}

QSize ProcessorStrip::sizeHint() const {
  const int width = columnWidth(true) * static_cast<int>(processors_.size());
  return {width, heightForWidth(width)};
}

QSize ProcessorStrip::minimumSizeHint() const {
  const int width = columnWidth(false) * static_cast<int>(processors_.size());
  return {width, heightForWidth(width)};
}

void ProcessorStrip::paintEvent(QPaintEvent* /*event*/) {
  if (processors_.empty()) {
    return;
  }
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const double whole = width();
  const double most = static_cast<double>(fontMetrics().height()) * kMostColumn;
  const double column = std::min(whole / static_cast<double>(processors_.size()), std::max<double>(most, columnWidth(true)));
  const double side = mark();
  painter.setPen(QPen(faint(palette(), 0.25), 2));
  for (std::size_t i = 1; i < processors_.size(); ++i) {
    const double from = column * static_cast<double>(i - 1);
    painter.drawLine(QPointF(from + side + 5, side / 2 + 1), QPointF(from + column - 5, side / 2 + 1));
  }
  for (std::size_t i = 0; i < processors_.size(); ++i) {
    const double left = column * static_cast<double>(i);
    drawMark(painter, QRectF(left + 1, 1, side - 2, side - 2), processors_[i]);
    drawTexts(painter, QRectF(left, side + fontMetrics().height() * kGapLines, column, height()), processors_[i]);
  }
}

/// Done and failed have a sign in their disc, the others the number that the pages speak of.
void ProcessorStrip::drawMark(QPainter& painter, const QRectF& circle, const ProcessorReport& processor) const {
  const QColor accent = palette().color(QPalette::Highlight);
  switch (processor.state) {
    case ProcessorState::Done:
      drawDisc(painter, circle, colourOf(Sign::Good));
      return drawTick(painter, circle);
    case ProcessorState::Failed:
      drawDisc(painter, circle, colourOf(Sign::Failure));
      return drawCross(painter, circle);
    case ProcessorState::Running:
      drawDisc(painter, circle, accent);
      return drawNumber(painter, circle, processor.number, palette().color(QPalette::HighlightedText));
    case ProcessorState::Pending:
      drawOutline(painter, circle, QPen(accent, kOutline));
      return drawNumber(painter, circle, processor.number, palette().color(QPalette::WindowText));
    case ProcessorState::NotSelected:
      drawOutline(painter, circle, QPen(faint(palette(), 0.3), kOutline, Qt::DotLine));
      return drawNumber(painter, circle, processor.number, faint(palette(), 0.45));
  }
}

void ProcessorStrip::drawTexts(QPainter& painter, const QRectF& column, const ProcessorReport& processor) const {
  const bool meant = processor.state != ProcessorState::NotSelected;
  const bool failed = processor.state == ProcessorState::Failed;
  QFont name = font();
  name.setBold(failed || processor.state == ProcessorState::Running);
  painter.setFont(name);
  painter.setPen(failed ? mixed(colourOf(Sign::Failure), palette().color(QPalette::WindowText), 0.75)
                        : faint(palette(), meant ? 1 : 0.5));
  painter.drawText(column, Qt::AlignLeft | Qt::AlignTop, QString::fromStdString(processor.name));
  painter.setFont(font());
  painter.setPen(faint(palette(), meant ? 0.72 : 0.45));
  painter.drawText(
      column.translated(0, fontMetrics().height()), Qt::AlignLeft | Qt::AlignTop,
      isNarrow(width()) ? versionsOf(processor).replace(arrow(), QLatin1Char('\n') + arrow().mid(1)) : versionsOf(processor));
}

}  // namespace firmlane
