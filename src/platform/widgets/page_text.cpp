#include "platform/widgets/page_text.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QStringList>
#include <algorithm>

#include "platform/widgets/looks.h"

namespace firmlane {

namespace {

constexpr int kLongestHeading = 90;   // letters; a first line beyond is a paragraph
constexpr int kSeparatorIndent = 16;  // blanks in front of an "OR" between two paragraphs
constexpr double kLineAir = 1.12;
constexpr double kBlankLine = 0.6;
constexpr double kPadding = 10;
constexpr double kEdge = 4;
constexpr QLatin1String kWarning("VERY IMPORTANT");

int indentOf(const QString& line) {
  const auto first = std::find_if(line.begin(), line.end(), [](QChar letter) { return letter != QLatin1Char(' '); });
  return static_cast<int>(first - line.begin());
}

}  // namespace

/// What stands right under a line with a colon is what that line announces; a line in brackets remarks on the one before.
std::vector<PageText::Part> PageText::partsOf(const QStringList& lines) {
  std::vector<Part> parts;
  for (int i = 0; i < lines.size(); ++i) {
    const QString line = lines[i].trimmed();
    const QString above = i > 0 ? lines[i - 1].trimmed() : QString();
    const bool announces = line.endsWith(QLatin1Char(':')) && i + 1 < lines.size() && !lines[i + 1].trimmed().isEmpty();
    const bool warned = i > 0 && !above.isEmpty() && (parts.back() == Part::Warning || parts.back() == Part::Important);
    if (line.startsWith(kWarning)) {
      parts.push_back(Part::Warning);
    } else if (warned) {
      parts.push_back(Part::Important);
    } else if (i == 0 && !announces && line.size() <= kLongestHeading) {
      parts.push_back(Part::Heading);
    } else if (above.endsWith(QLatin1Char(':'))) {
      parts.push_back(Part::Value);
    } else if (indentOf(lines[i]) >= kSeparatorIndent) {
      parts.push_back(Part::Between);
    } else {
      parts.push_back(line.startsWith(QLatin1Char('(')) ? Part::Remark : Part::Text);
    }
  }
  return parts;
}

PageText::PageText(const QString& text, int width) : width_(width) {
  QString kept = text;
  while (!kept.isEmpty() && kept.back().isSpace()) {
    kept.chop(1);
  }
  if (kept.isEmpty()) {
    return;
  }
  const QStringList lines = kept.split(QLatin1Char('\n'));
  const std::vector<Part> parts = partsOf(lines);
  const double line = QFontMetricsF(fontOf(TypeSize::Text)).height();
  for (int i = 0; i < lines.size(); ++i) {
    const Part part = parts[static_cast<std::size_t>(i)];
    if (part != Part::Important) {
      closeWarning();
    }
    if (part == Part::Warning) {
      height_ += line * kBlankLine;
      warningTop_ = height_;
      height_ += kPadding;
    }
    if (lines[i].trimmed().isEmpty()) {
      height_ += line * kBlankLine;
    } else {
      set(lines[i], part);
    }
  }
  closeWarning();
}

void PageText::closeWarning() {
  if (warningTop_ >= 0) {
    height_ += kPadding;
    warnings_.emplace_back(0, warningTop_, width_, height_ - warningTop_);
    warningTop_ = -1;
  }
}

void PageText::set(const QString& line, Part part) {
  const bool large = part == Part::Heading || part == Part::Value;
  QFont font = fontOf(large ? TypeSize::Heading : TypeSize::Text);
  font.setBold(large || part == Part::Warning);
  const QFontMetricsF metrics(font);
  const double blanks = std::min(indentOf(line) * metrics.horizontalAdvance(QLatin1Char(' ')), width_ * 0.5);
  const double left = (warningTop_ >= 0 ? kEdge + kPadding : 0) + blanks;
  auto layout = std::make_unique<QTextLayout>(line.trimmed(), font);
  layout->setPosition({left, height_});
  layout->beginLayout();
  double down = 0;
  for (QTextLine row = layout->createLine(); row.isValid(); row = layout->createLine()) {
    row.setLineWidth(std::max(1.0, width_ - left - (warningTop_ >= 0 ? kPadding : 0)));
    row.setPosition({0, down});
    down += row.height() * kLineAir;
  }
  layout->endLayout();
  height_ += down;
  lines_.push_back({std::move(layout), part});
}

void PageText::paint(QPainter& painter, QPointF corner, const QPalette& palette) const {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  for (const QRectF& warning : warnings_) {
    QPainterPath box;
    box.addRoundedRect(warning.translated(corner), 4, 4);
    painter.setClipPath(box);
    painter.fillPath(box, groundOf(Sign::Caution, palette));
    painter.fillRect(QRectF(warning.translated(corner).topLeft(), QSizeF(kEdge, warning.height())), colourOf(Sign::Caution));
    painter.setClipping(false);
  }
  for (const Line& line : lines_) {
    const bool quiet = line.part == Part::Remark || line.part == Part::Between;
    const QColor ink = palette.color(QPalette::WindowText);
    painter.setPen(quiet ? mixed(ink, palette.color(QPalette::Window), 0.68) : ink);
    line.layout->draw(&painter, corner);
  }
  painter.restore();
}

}  // namespace firmlane
