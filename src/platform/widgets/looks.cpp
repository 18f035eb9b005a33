#include "platform/widgets/looks.h"

#include <QApplication>
#include <QFontInfo>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOption>
#include <algorithm>
#include <cmath>

#include "platform/widgets/pictures.h"

namespace firmlane {

namespace {

constexpr double kSizes[] = {1.35, 1.1, 0.95};
constexpr double kGround = 0.13;
constexpr double kDarkGround = 0.24;

struct SignLook {
  Sign sign;
  const char* picture;
  const char* word;
  QRgb colour;
};

constexpr SignLook kSigns[] = {
    {Sign::Good, "signGood", "Success", 0xFF2F9E6B},
    {Sign::Caution, "signCaution", "Caution", 0xFFE0962F},
    {Sign::Failure, "signFailure", "Failure", 0xFFC8443C},
    {Sign::Question, "signQuestion", "Question", 0xFF2C7A88},
    {Sign::Information, "signInformation", "Information", 0xFF2C7A88},
    {Sign::None, "", "", 0xFF6F8794},
};

const SignLook& lookOf(Sign sign) {
  return *std::find_if(std::begin(kSigns), std::end(kSigns) - 1, [sign](const SignLook& look) { return look.sign == sign; });
}

/// The outline of a mark: seen on white as well as in the dark, selected or not.
QColor outline(const QStyleOption& option) {
  return mixed(option.palette.color(QPalette::WindowText), option.palette.color(QPalette::Window),
               (option.state & QStyle::State_Enabled) != 0 ? 0.6 : 0.3);
}

/// Field and edge of a mark, as large as fits into the middle of its space.
QRectF markFrame(const QStyleOption& option, QPainter& painter, double roundness) {
  const double side = std::min(option.rect.width(), option.rect.height()) - 1.5;
  QRectF frame(0, 0, side, side);
  frame.moveCenter(QRectF(option.rect).center());
  const bool enabled = (option.state & QStyle::State_Enabled) != 0;
  const bool on = (option.state & QStyle::State_On) != 0;
  const QColor accent = option.palette.color(QPalette::Highlight);
  const bool pointed = enabled && (option.state & QStyle::State_MouseOver) != 0;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen((on && enabled) || pointed ? accent : outline(option), 1.5));
  painter.setBrush(on && enabled ? accent : option.palette.color(enabled ? QPalette::Base : QPalette::Window));
  painter.drawRoundedRect(frame, side * roundness, side * roundness);
  return frame;
}

QColor onAccent(const QStyleOption& option) {
  return (option.state & QStyle::State_Enabled) != 0 ? option.palette.color(QPalette::HighlightedText) : outline(option);
}

void drawOptionMark(const QStyleOption& option, QPainter& painter) {
  const QRectF frame = markFrame(option, painter, 0.5);
  if ((option.state & QStyle::State_On) != 0) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(onAccent(option));
    painter.drawEllipse(frame.center(), frame.width() * 0.21, frame.width() * 0.21);
  }
}

void drawCheckMark(const QStyleOption& option, QPainter& painter) {
  const QRectF frame = markFrame(option, painter, 0.2);
  if ((option.state & QStyle::State_On) != 0) {
    const auto at = [&frame](double x, double y) {
      return QPointF(frame.left() + x * frame.width(), frame.top() + y * frame.height());
    };
    QPainterPath hook(at(0.24, 0.53));
    hook.lineTo(at(0.43, 0.72));
    hook.lineTo(at(0.77, 0.3));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(onAccent(option), std::max(1.6, frame.width() * 0.13), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(hook);
  }
}

void drawFocus(const QStyleOption& option, QPainter& painter) {
  const bool onSelection = (option.state & QStyle::State_Selected) != 0;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(option.palette.color(onSelection ? QPalette::HighlightedText : QPalette::Highlight), 2));
  painter.drawRoundedRect(QRectF(option.rect).adjusted(1, 1, -1, -1), 3, 3);
}

/// The edge of a field, seen in the dark too.
void drawFieldFrame(const QStyleOption& option, QPainter& painter) {
  const bool focused = (option.state & QStyle::State_HasFocus) != 0;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(focused ? option.palette.color(QPalette::Highlight) : outline(option), focused ? 2 : 1));
  painter.drawRoundedRect(QRectF(option.rect).adjusted(1, 1, -1, -1), 2, 2);
}

/// A slim bar with what it has reached written beside it.
void drawBar(const QStyleOptionProgressBar& bar, QPainter& painter) {
  const QFontMetrics& metrics = bar.fontMetrics;
  const int beside =
      bar.textVisible && !bar.text.isEmpty() ? metrics.horizontalAdvance(QStringLiteral("100%")) + metrics.averageCharWidth() : 0;
  QRectF groove(bar.rect);
  groove.setWidth(groove.width() - beside);
  const double height = std::min<double>(groove.height(), std::max(8, metrics.height() * 5 / 8));
  groove = QRectF(groove.left(), groove.center().y() - height / 2, groove.width(), height);
  const double share = double(bar.progress - bar.minimum) / (bar.maximum - bar.minimum);
  QPainterPath whole;
  whole.addRoundedRect(groove, height / 2, height / 2);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillPath(whole, mixed(bar.palette.color(QPalette::WindowText), bar.palette.color(QPalette::Window), 0.16));
  painter.setClipPath(whole);
  painter.fillRect(QRectF(groove.left(), groove.top(), groove.width() * std::clamp(share, 0.0, 1.0), height),
                   bar.palette.color(QPalette::Highlight));
  painter.setClipping(false);
  painter.setPen(bar.palette.color(QPalette::WindowText));
  painter.drawText(bar.rect, Qt::AlignRight | Qt::AlignVCenter, bar.text);
}

}  // namespace

QFont fontOf(TypeSize size) {
  QFont font = QApplication::font();
  font.setPointSizeF(QFontInfo(font).pointSizeF() * kSizes[static_cast<int>(size)]);
  font.setBold(size == TypeSize::Heading);
  return font;
}

bool isDark(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

QColor mixed(const QColor& first, const QColor& second, double share) {
  const auto part = [share](int a, int b) { return static_cast<int>(std::lround(a * share + b * (1 - share))); };
  return {part(first.red(), second.red()), part(first.green(), second.green()), part(first.blue(), second.blue())};
}

QColor faint(const QPalette& palette, double share) {
  QColor colour = palette.color(QPalette::WindowText);
  colour.setAlphaF(static_cast<float>(share));
  return colour;
}

QColor colourOf(Sign sign) { return QColor::fromRgb(lookOf(sign).colour); }

QColor groundOf(Sign sign, const QPalette& palette) {
  const bool dark = isDark(palette);
  return mixed(colourOf(sign), palette.color(dark ? QPalette::Window : QPalette::Base), dark ? kDarkGround : kGround);
}

QString wordOf(Sign sign) { return QLatin1String(lookOf(sign).word); }

std::string pictureOf(Sign sign) { return lookOf(sign).picture; }

QPixmap signPixmap(Sign sign, int side, qreal ratio) {
  QPixmap pixmap(QSize(side, side) * ratio);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  drawPicture(painter, pixmap.rect(), pictureOf(sign), PictureFit::Whole);
  painter.end();
  pixmap.setDevicePixelRatio(ratio);
  return pixmap;
}

void Looks::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter, const QWidget* widget) const {
  const auto own = element == PE_IndicatorRadioButton ? drawOptionMark
                   : element == PE_IndicatorCheckBox  ? drawCheckMark
                   : element == PE_FrameFocusRect     ? drawFocus
                   : element == PE_FrameLineEdit      ? drawFieldFrame
                                                      : nullptr;
  if (own == nullptr) {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    return;
  }
  painter->save();
  own(*option, *painter);
  painter->restore();
}

void Looks::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter, const QWidget* widget) const {
  const auto* bar = element == CE_ProgressBar ? qstyleoption_cast<const QStyleOptionProgressBar*>(option) : nullptr;
  if (bar == nullptr || bar->maximum <= bar->minimum) {
    QProxyStyle::drawControl(element, option, painter, widget);
    return;
  }
  painter->save();
  drawBar(*bar, *painter);
  painter->restore();
}

/// Marks grow with the writing beside them.
int Looks::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
  const int usual = QProxyStyle::pixelMetric(metric, option, widget);
  const bool mark = metric == PM_IndicatorWidth || metric == PM_IndicatorHeight || metric == PM_ExclusiveIndicatorWidth ||
                    metric == PM_ExclusiveIndicatorHeight;
  return mark && widget != nullptr ? std::max(usual, widget->fontMetrics().height() * 4 / 5) : usual;
}

/// The buttons of boxes are words; a desktop's icons beside them would be the only ones that are not ours.
int Looks::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget, QStyleHintReturn* result) const {
  return hint == SH_DialogButtonBox_ButtonsHaveIcons ? 0 : QProxyStyle::styleHint(hint, option, widget, result);
}

void useLooks() {
  if (dynamic_cast<const Looks*>(QApplication::style()) == nullptr) {
    QApplication::setStyle(new Looks);  // NOLINT(cppcoreguidelines-owning-memory): the application owns its style
  }
}

}  // namespace firmlane
