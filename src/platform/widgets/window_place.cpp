#include "platform/widgets/window_place.h"

#include <QApplication>
#include <QScreen>
#include <QWindow>
#include <algorithm>

namespace firmlane {

namespace {

QMargins ownFrame(const QWidget& window) {
  return window.isVisible() && window.windowHandle() != nullptr ? window.windowHandle()->frameMargins() : QMargins();
}

}  // namespace

QMargins frameOf(const QWidget& window) {
  QMargins frame = ownFrame(window);
  for (const QWidget* other : QApplication::topLevelWidgets()) {
    if (frame.isNull() && (other->windowType() == Qt::Window || other->windowType() == Qt::Dialog)) {
      frame = ownFrame(*other);
    }
  }
  return frame;
}

QRect roomAround(const QPoint& point) {
  const QScreen* screen = QGuiApplication::screenAt(point);
  return (screen != nullptr ? screen : QGuiApplication::primaryScreen())->availableGeometry();
}

void placeAt(QWidget& window, const QPoint& corner, const QRect& room) {
  const QSize size = window.size().grownBy(frameOf(window));
  window.move(std::clamp(corner.x(), room.left(), std::max(room.left(), room.right() + 1 - size.width())),
              std::clamp(corner.y(), room.top(), std::max(room.top(), room.bottom() + 1 - size.height())));
}

void placeAround(QWidget& window, const QPoint& middle, const QRect& room) {
  const QSize size = window.size().grownBy(frameOf(window));
  placeAt(window, middle - QPoint(size.width() / 2, size.height() / 2), room);
}

}  // namespace firmlane
