// A page's text, set for reading: a heading, paragraphs, remarks in brackets, what must not be overlooked. The text itself says
// by its form which line is what; nothing is added to it and nothing left out but line ends at its end.
#pragma once

#include <QPalette>
#include <QString>
#include <QTextLayout>
#include <memory>
#include <vector>

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
  enum class Part { Heading, Text, Value, Remark, Between, Warning, Important };
  struct Line {
    std::unique_ptr<QTextLayout> layout;
    Part part;
  };

  static std::vector<Part> partsOf(const QStringList& lines);
  void set(const QString& line, Part part);
  void closeWarning();

  int width_;
  double height_ = 0;
  double warningTop_ = -1;
  std::vector<Line> lines_;
  std::vector<QRectF> warnings_;
};

}  // namespace firmlane
