// The pictures that forms name, drawn as vectors so that they are sharp at any scale.
#pragma once

#include <QIcon>
#include <QSize>
#include <QString>
#include <string>

class QPainter;
class QRectF;

namespace firmlane {

/// How a picture stands in a space of another shape.
enum class PictureFit {
  Whole,    ///< all of it, in the middle
  Covering  ///< the space is filled, what goes beyond is cut
};

/// Size of a picture in logical pixels; empty when there is none of that name.
QSize pictureSize(const std::string& name);

/// Draws a picture into a space; nothing when there is none of that name.
void drawPicture(QPainter& painter, const QRectF& space, const std::string& name, PictureFit fit);

/// A picture as an icon, sharp at the usual sizes; one of an unknown name is empty, and takes its room.
QIcon pictureIcon(const std::string& name);

/// The program's icon.
QIcon programIcon();

}  // namespace firmlane
