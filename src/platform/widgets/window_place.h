// Where windows stand: in the middle of a screen or of another window, with the frame that the window manager puts around them,
// and clear of its panels as far as there is room.
#pragma once

#include <QMargins>
#include <QRect>
#include <QWidget>

namespace firmlane {

/// The frame around a window: its own once it is up, before that the one of another window of the program, else none.
QMargins frameOf(const QWidget& window);

/// What the screen around that point has room for.
QRect roomAround(const QPoint& point);

/// Moves a window, frame included, so that its middle is there, but not beyond the room.
void placeAround(QWidget& window, const QPoint& middle, const QRect& room);

/// Moves a window, frame included, so that its corner is there, but not beyond the room.
void placeAt(QWidget& window, const QPoint& corner, const QRect& room);

}  // namespace firmlane
