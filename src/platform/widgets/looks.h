// How the windows look, wherever one decision serves all of them: sizes of type, colours and signs that mean something, and the
// parts that a desktop's own style draws too faintly, such as marks of options, the focus and bars. No window, no control.
#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>
#include <QPixmap>
#include <QProxyStyle>
#include <QString>

namespace firmlane {

/// What a box or a band has to say, before anyone has read it.
enum class Sign { None, Good, Caution, Failure, Question, Information };

/// The three sizes in which pages are written.
enum class TypeSize { Heading, Text, Hint };

/// The application's font in one of the three sizes.
QFont fontOf(TypeSize size);

bool isDark(const QPalette& palette);
/// `share` of the first colour, from 0 to 1, the rest of the second.
QColor mixed(const QColor& first, const QColor& second, double share);
/// So much of the text's colour, over whatever ground.
QColor faint(const QPalette& palette, double share);
/// The colour that goes with a sign.
QColor colourOf(Sign sign);
/// The ground of what is marked by a sign, on a window of that palette.
QColor groundOf(Sign sign, const QPalette& palette);
/// The sign in a word, for those who do not see it; empty for none.
QString wordOf(Sign sign);
/// The name of the sign's picture; empty for none.
std::string pictureOf(Sign sign);
/// The sign, sharp on a screen of that ratio of pixels. Side in logical pixels.
QPixmap signPixmap(Sign sign, int side, qreal ratio);

/// The desktop's style with marks, focus and bars of our own.
class Looks : public QProxyStyle {
 public:
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter, const QWidget* widget) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget, QStyleHintReturn* result) const override;
};

/// Gives the application this look, if it has not got it yet.
void useLooks();

}  // namespace firmlane
