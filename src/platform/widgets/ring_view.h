// A ring that tells of a wait: it empties over a limit with the seconds left in its middle, fills with what has come, or turns
// while there is nothing to measure. It draws itself anew only when it would look different.
#pragma once

#include <QWidget>

namespace firmlane {

class RingView : public QWidget {
 public:
  /// `lines` of text across.
  explicit RingView(double lines, QWidget* parent = nullptr);

  /// So much of the ring stands, 0 to 1, with a text in its middle.
  void showShare(double share, const QString& middle);
  /// The ring turns; each step is a twelfth.
  void showTurning(int step);

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void take(int start, int length, const QString& text);
  [[nodiscard]] double thickness() const;
  [[nodiscard]] QRectF circle() const;
  /// Where the text stands.
  [[nodiscard]] QRect middle() const;
  [[nodiscard]] QRect arcRect(int from, int to) const;

  double lines_;
  // In sixteenths of a degree from the top, clockwise.
  int start_ = 0;
  int length_ = 0;
  QString middle_;
};

}  // namespace firmlane
