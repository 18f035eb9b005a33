// The colours in which activity is drawn, by the palette of the widget: light and dark alike.
#pragma once

#include <QColor>
#include <QPalette>

namespace firmlane {

struct ActivityColours {
  explicit ActivityColours(const QPalette& palette)
      : text(palette.color(QPalette::WindowText)),
        dark(palette.color(QPalette::Window).lightness() < text.lightness()),
        accent(dark ? QColor(0x4f, 0xb3, 0xc4) : QColor(0x21, 0x7a, 0x8a)),
        good(dark ? QColor(0x58, 0xb5, 0x86) : QColor(0x2b, 0x84, 0x5a)),
        bad(dark ? QColor(0xf0, 0x8a, 0x80) : QColor(0xb8, 0x32, 0x2a)),
        onMark(dark ? QColor(0x10, 0x1c, 0x24) : QColor(Qt::white)) {}

  /// The text's colour, so much of it.
  [[nodiscard]] QColor faint(double share) const {
    QColor colour = text;
    colour.setAlphaF(static_cast<float>(share));
    return colour;
  }

  QColor text;
  bool dark;
  /// What moves, and what is being worked at.
  QColor accent;
  QColor good;
  QColor bad;
  /// Writing on one of the three above.
  QColor onMark;
};

}  // namespace firmlane
