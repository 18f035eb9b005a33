#include "platform/widgets/button_row.h"

#include <QWidget>
#include <algorithm>

namespace firmlane {

namespace {

QSize sizeOf(const QLayoutItem& item) { return item.sizeHint().expandedTo(item.minimumSize()); }

}  // namespace

ButtonRow::ButtonRow(std::initializer_list<QWidget*> widgets)
    : parting_(static_cast<std::size_t>(std::find(widgets.begin(), widgets.end(), nullptr) - widgets.begin())) {
  for (QWidget* widget : widgets) {
    if (widget != nullptr) {
      addWidget(widget);
    }
  }
}

ButtonRow::~ButtonRow() = default;

void ButtonRow::addItem(QLayoutItem* item) { items_.emplace_back(item); }

QLayoutItem* ButtonRow::itemAt(int index) const {
  return index >= 0 && index < count() ? items_[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* ButtonRow::takeAt(int index) {
  if (itemAt(index) == nullptr) {
    return nullptr;
  }
  const auto taken = items_.begin() + index;
  QLayoutItem* item = taken->release();
  items_.erase(taken);
  parting_ -= static_cast<std::size_t>(index) < parting_ ? 1 : 0;
  return item;
}

int ButtonRow::widthOf(const Items& items) const {
  int width = -spacing();
  for (const QLayoutItem* item : items) {
    width += spacing() + sizeOf(*item).width();
  }
  return std::max(0, width);
}

int ButtonRow::heightOf(const Line& line) const {
  int height = 0;
  for (const Items* items : {&line.left, &line.right}) {
    for (const QLayoutItem* item : *items) {
      height = std::max(height, sizeOf(*item).height());
    }
  }
  return height;
}

std::vector<ButtonRow::Line> ButtonRow::linesFor(int width) const {
  Line whole;
  for (std::size_t i = 0; i < items_.size(); ++i) {
    if (!items_[i]->isEmpty()) {
      (i < parting_ ? whole.left : whole.right).push_back(items_[i].get());
    }
  }
  const int between = whole.left.empty() || whole.right.empty() ? 0 : spacing();
  if (widthOf(whole.left) + between + widthOf(whole.right) <= width) {
    return {whole};
  }
  std::vector<Line> lines;
  for (Items Line::*side : {&Line::left, &Line::right}) {
    for (QLayoutItem* item : whole.*side) {
      const bool begun = !lines.empty() && !(lines.back().*side).empty();
      if (!begun || widthOf(lines.back().*side) + spacing() + sizeOf(*item).width() > width) {
        lines.emplace_back();
      }
      (lines.back().*side).push_back(item);
    }
  }
  return lines;
}

QSize ButtonRow::sizeHint() const {
  if (isEmpty()) {
    return {0, 0};
  }
  const Line whole = linesFor(QLAYOUTSIZE_MAX).front();
  const QMargins margins = contentsMargins();
  const int between = whole.left.empty() || whole.right.empty() ? 0 : spacing();
  return QSize(widthOf(whole.left) + between + widthOf(whole.right), heightOf(whole)).grownBy(margins);
}

QSize ButtonRow::minimumSize() const {
  if (isEmpty()) {
    return {0, 0};
  }
  QSize least;
  for (const auto& item : items_) {
    if (!item->isEmpty()) {
      least = least.expandedTo(sizeOf(*item));
    }
  }
  return least.grownBy(contentsMargins());
}

int ButtonRow::heightForWidth(int width) const {
  if (isEmpty()) {
    return 0;
  }
  const QMargins margins = contentsMargins();
  int height = -spacing();
  for (const Line& line : linesFor(width - margins.left() - margins.right())) {
    height += spacing() + heightOf(line);
  }
  return height + margins.top() + margins.bottom();
}

void ButtonRow::setGeometry(const QRect& place) {
  QLayout::setGeometry(place);
  QRect room = place.marginsRemoved(contentsMargins());
  for (const Line& line : linesFor(room.width())) {
    room.setHeight(heightOf(line));
    this->place(line.left, room);
    this->place(line.right, {room.right() + 1 - widthOf(line.right), room.top(), widthOf(line.right), room.height()});
    room.translate(0, room.height() + spacing());
  }
}

void ButtonRow::place(const Items& items, QRect line) const {
  for (QLayoutItem* item : items) {
    const QSize size = sizeOf(*item).boundedTo(line.size());
    item->setGeometry({line.left(), line.top() + (line.height() - size.height()) / 2, size.width(), size.height()});
    line.setLeft(line.left() + size.width() + spacing());
  }
}

}  // namespace firmlane
