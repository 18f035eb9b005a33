#include "platform/widgets/pictures.h"

#include <QFile>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

// The pictures are part of a static library, whose resources a program has to ask for.
static void initPictures() { Q_INIT_RESOURCE(pictures); }

namespace firmlane {

namespace {

QString fileOf(const std::string& name) {
  initPictures();
  return QStringLiteral(":/firmlane/pictures/%1.svg").arg(QString::fromStdString(name));
}

}  // namespace

QSize pictureSize(const std::string& name) {
  const QString file = fileOf(name);
  return QFile::exists(file) ? QSvgRenderer(file).defaultSize() : QSize();
}

void drawPicture(QPainter& painter, const QRectF& space, const std::string& name, PictureFit fit) {
  const QString file = fileOf(name);
  if (!QFile::exists(file)) {
    return;
  }
  QSvgRenderer renderer(file);
  const QSizeF size = QSizeF(renderer.defaultSize())
                          .scaled(space.size(), fit == PictureFit::Whole ? Qt::KeepAspectRatio : Qt::KeepAspectRatioByExpanding);
  QRectF target(QPointF(), size);
  target.moveCenter(space.center());
  painter.save();
  painter.setClipRect(space);
  renderer.render(&painter, target);
  painter.restore();
}

QIcon pictureIcon(const std::string& name) {
  QIcon icon;
  const QSize shape = pictureSize(name).isEmpty() ? QSize(1, 1) : pictureSize(name);
  for (const int side : {16, 24, 32, 48, 64, 128, 256}) {
    QPixmap pixmap(shape.scaled(side, side, Qt::KeepAspectRatio));
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    drawPicture(painter, pixmap.rect(), name, PictureFit::Whole);
    painter.end();
    icon.addPixmap(pixmap);
  }
  return icon;
}

QIcon programIcon() { return pictureIcon("firmlane"); }

}  // namespace firmlane
