// A page's text, set for reading: a heading, paragraphs, remarks in brackets, what is announced, what must not be overlooked. The
// text itself says by its form which line is what; nothing is added to it and nothing left out but line ends at its end.
#pragma once

#include <QPalette>
#include <QString>
#include <QTextLayout>
#include <memory>
#include <vector>

#include "platform/widgets/looks.h"

class QPainter;

namespace firmlane {

class PageText {
 public:
  /// Sets the text in a column of that width, in pixels.
  PageText(const QString& text, int width);

  [[nodiscard]] int width() const { return width_; }
  [[nodiscard]] int height() const { return static_cast<int>(height_ + 0.999); }
  /// Draws it with its upper left corner there.
  void paint(QPainter& painter, QPointF corner, const QPalette& palette) const;

 private:
  enum class Part { Heading, Text, Announcing, Value, Remark, Between, Warning, Important };
  struct Line {
    std::unique_ptr<QTextLayout> layout;
    Part part;
  };
  /// Lines that stand out together on a ground of their own.
  struct Card {
    Sign sign;
    QRectF place;
  };

  static std::vector<Part> partsOf(const QStringList& lines);
  void set(const QString& line, Part part);
  void openCard(Sign sign);
  void closeCard();

  int width_;
  double measure_;  // the width that lines take at most
  double height_ = 0;
  Sign open_ = Sign::None;
  std::vector<Line> lines_;
  std::vector<Card> cards_;
};

}  // namespace firmlane
