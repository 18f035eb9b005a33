// The buttons at the foot of a window: some at the left, the others at the right, in one line where that has room for them.
#pragma once

#include <QLayout>
#include <initializer_list>
#include <memory>
#include <vector>

namespace firmlane {

/// Where one line is too narrow, those at the left stand above those at the right, in as many lines as they need: large writing
/// on a small screen takes no button away. Without a button that is shown it takes no room.
class ButtonRow : public QLayout {
 public:
  /// A null widget parts left from right.
  ButtonRow(std::initializer_list<QWidget*> widgets);
  ButtonRow(const ButtonRow&) = delete;
  ButtonRow& operator=(const ButtonRow&) = delete;
  ~ButtonRow() override;

  void addItem(QLayoutItem* item) override;
  [[nodiscard]] int count() const override { return static_cast<int>(items_.size()); }
  [[nodiscard]] QLayoutItem* itemAt(int index) const override;
  QLayoutItem* takeAt(int index) override;

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSize() const override;
  [[nodiscard]] bool hasHeightForWidth() const override { return true; }
  [[nodiscard]] int heightForWidth(int width) const override;
  [[nodiscard]] Qt::Orientations expandingDirections() const override { return Qt::Horizontal; }
  void setGeometry(const QRect& place) override;

 private:
  using Items = std::vector<QLayoutItem*>;
  struct Line {
    Items left;
    Items right;
  };

  [[nodiscard]] int widthOf(const Items& items) const;
  [[nodiscard]] int heightOf(const Line& line) const;
  [[nodiscard]] std::vector<Line> linesFor(int width) const;
  void place(const Items& items, QRect line) const;

  std::vector<std::unique_ptr<QLayoutItem>> items_;
  std::size_t parting_;  // how many stand at the left
};

}  // namespace firmlane
