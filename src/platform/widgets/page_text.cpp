#include "platform/widgets/page_text.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QStringList>
#include <algorithm>
#include <utility>

namespace firmlane {

namespace {

constexpr int kLongestHeading = 90;   // letters; a first line beyond is a paragraph
constexpr int kMostLetters = 92;      // of a line; a longer one is hard to read
constexpr int kSeparatorIndent = 16;  // blanks in front of an "OR" between two paragraphs
constexpr double kLineAir = 1.12;
constexpr double kBlankLine = 0.6;
constexpr double kCardPadding = 10;
constexpr double kCardEdge = 4;
constexpr QLatin1String kWarning("VERY IMPORTANT");

/// Letters of the mark that a line of a list begins with: "- " or "1. ".
int markOf(const QString& line) {
  const bool numbered = line.size() > 2 && line[0].isDigit() && line[1] == QLatin1Char('.');
  return numbered ? 3 : line.startsWith(QLatin1String("- ")) ? 2 : 0;
}

int indentOf(const QString& line) {
  const auto first = std::find_if(line.begin(), line.end(), [](QChar letter) { return letter != QLatin1Char(' '); });
  return static_cast<int>(first - line.begin());
}

}  // namespace

/// What stands right under a line with a colon is what that line announces; a line in brackets is a remark.
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
    } else if (announces) {
      parts.push_back(Part::Announcing);
    } else if (i == 0 && line.size() <= kLongestHeading) {
      parts.push_back(Part::Heading);
    } else if (i > 0 && parts.back() == Part::Announcing) {
      parts.push_back(Part::Value);
    } else if (indentOf(lines[i]) >= kSeparatorIndent) {
      parts.push_back(Part::Between);
    } else {
      parts.push_back(line.startsWith(QLatin1Char('(')) ? Part::Remark : Part::Text);
    }
  }
  return parts;
}

PageText::PageText(const QString& text, int width)
    : width_(width), measure_(std::min<double>(width, kMostLetters * QFontMetricsF(fontOf(TypeSize::Text)).averageCharWidth())) {
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
    const bool opens = part == Part::Warning || part == Part::Announcing;
    if (opens || (part != Part::Important && part != Part::Value)) {
      closeCard();
    }
    if (opens) {
      height_ += i > 0 ? line * kBlankLine : 0;
      openCard(part == Part::Warning ? Sign::Caution : Sign::Information);
    }
    if (lines[i].trimmed().isEmpty()) {
      height_ += line * kBlankLine;
    } else {
      set(lines[i], part);
    }
  }
  closeCard();
}

void PageText::openCard(Sign sign) {
  open_ = sign;
  cards_.push_back({sign, QRectF(0, height_, measure_, 0)});
  height_ += kCardPadding;
}

void PageText::closeCard() {
  if (std::exchange(open_, Sign::None) != Sign::None) {
    height_ += kCardPadding;
    cards_.back().place.setBottom(height_);
  }
}

void PageText::set(const QString& line, Part part) {
  const bool large = part == Part::Heading || part == Part::Value;
  QFont font = fontOf(large ? TypeSize::Heading : TypeSize::Text);
  font.setBold(large || part == Part::Warning);
  const QFontMetricsF metrics(font);
  const double blanks = std::min(indentOf(line) * metrics.horizontalAdvance(QLatin1Char(' ')), measure_ * 0.5);
  const double left = (open_ != Sign::None ? kCardEdge + kCardPadding : 0) + blanks;
  const double hang = metrics.horizontalAdvance(line.trimmed().left(markOf(line.trimmed())));
  auto layout = std::make_unique<QTextLayout>(line.trimmed(), font);
  layout->setPosition({left, height_});
  layout->beginLayout();
  double down = 0;
  for (QTextLine row = layout->createLine(); row.isValid(); row = layout->createLine()) {
    const double in = down > 0 ? hang : 0;
    row.setLineWidth(std::max(1.0, measure_ - left - in - (open_ != Sign::None ? kCardPadding : 0)));
    row.setPosition({in, down});
    down += row.height() * kLineAir;
  }
  layout->endLayout();
  height_ += down;
  lines_.push_back({std::move(layout), part});
}

void PageText::paint(QPainter& painter, QPointF corner, const QPalette& palette) const {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  for (const Card& card : cards_) {
    const QRectF place = card.place.translated(corner);
    QPainterPath box;
    box.addRoundedRect(place, 4, 4);
    painter.setClipPath(box);
    painter.fillPath(box, groundOf(card.sign, palette));
    painter.fillRect(QRectF(place.topLeft(), QSizeF(kCardEdge, place.height())), colourOf(card.sign));
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
