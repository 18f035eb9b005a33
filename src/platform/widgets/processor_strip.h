// The unit's processors in the order of programming: number, name, version before and after, and a mark for how each stands. The
// numbers are those that the pages speak of.
#pragma once

#include <QWidget>
#include <vector>

#include "progress/activity.h"

namespace firmlane {

class ProcessorStrip : public QWidget {
 public:
  explicit ProcessorStrip(QWidget* parent = nullptr);

  void tell(const std::vector<ProcessorReport>& processors);

  [[nodiscard]] QSize sizeHint() const override;
  /// Where room is short the versions stand below each other.
  [[nodiscard]] QSize minimumSizeHint() const override;
  [[nodiscard]] bool hasHeightForWidth() const override { return true; }
  [[nodiscard]] int heightForWidth(int width) const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] double mark() const;
  /// Room for both versions side by side, or one of them.
  [[nodiscard]] int columnWidth(bool sideBySide) const;
  [[nodiscard]] bool isNarrow(int width) const;
  void drawMark(QPainter& painter, const QRectF& circle, const ProcessorReport& processor) const;
  void drawTexts(QPainter& painter, const QRectF& column, const ProcessorReport& processor) const;

  std::vector<ProcessorReport> processors_;
};

}  // namespace firmlane
