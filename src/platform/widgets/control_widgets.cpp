#include "platform/widgets/control_widgets.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>
#include <QTextLayout>
#include <algorithm>

namespace firmlane {

namespace {

// The width at which a wrapped caption is taken to stand before its window has one.
constexpr int kCaptionWidth = 340;
constexpr int kRemarkWidth = 190;
constexpr int kLineAir = 8;  // above and below a line of a list

bool isClickOn(const QWidget& widget, const QMouseEvent& event) {
  return event.button() == Qt::LeftButton && widget.rect().contains(event.position().toPoint());
}

}  // namespace

TextLabel::TextLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
  setAlignment(Qt::AlignLeft | Qt::AlignTop);
}

void TextLabel::setClickable(bool clickable) {
  if (clickable == clickable_) {
    return;
  }
  clickable_ = clickable;
  setCursor(clickable ? Qt::PointingHandCursor : Qt::ArrowCursor);
  setFocusPolicy(clickable ? Qt::StrongFocus : Qt::NoFocus);
  setForegroundRole(clickable ? QPalette::Link : QPalette::WindowText);
  QFont underlined = font();
  underlined.setUnderline(clickable);
  setFont(underlined);
}

void TextLabel::paintEvent(QPaintEvent* event) {
  QLabel::paintEvent(event);
  if (hasFocus()) {
    QStyleOptionFocusRect option;
    option.initFrom(this);
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
  }
}

void TextLabel::mouseReleaseEvent(QMouseEvent* event) {
  if (clickable_ && clicked && isClickOn(*this, *event)) {
    clicked();
    return;
  }
  QLabel::mouseReleaseEvent(event);
}

void TextLabel::keyPressEvent(QKeyEvent* event) {
  if (clickable_ && clicked &&
      (event->key() == Qt::Key_Space || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
    clicked();
    return;
  }
  QLabel::keyPressEvent(event);
}

PictureWidget::PictureWidget(QWidget* parent) : QWidget(parent) { setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed); }

void PictureWidget::setPicture(const std::string& name) {
  if (name != name_) {
    name_ = name;
    drawn_ = QPixmap();
    updateGeometry();
    update();
  }
}

void PictureWidget::setClickable(bool clickable) {
  clickable_ = clickable;
  setCursor(clickable ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

void PictureWidget::paintEvent(QPaintEvent* /*event*/) {
  const QSize pixels = size() * devicePixelRatioF();
  if (drawn_.size() != pixels) {
    drawn_ = QPixmap(pixels);
    drawn_.fill(Qt::transparent);
    QPainter vectors(&drawn_);
    drawPicture(vectors, QRectF(QPointF(), QSizeF(pixels)), name_, fit_);
  }
  drawn_.setDevicePixelRatio(devicePixelRatioF());
  QPainter painter(this);
  painter.setOpacity(isEnabled() ? 1.0 : 0.4);
  painter.drawPixmap(0, 0, drawn_);
}

void PictureWidget::mouseReleaseEvent(QMouseEvent* event) {
  if (clickable_ && clicked && isClickOn(*this, *event)) {
    clicked();
    return;
  }
  QWidget::mouseReleaseEvent(event);
}

QSize RoomyButton::sizeHint() const {
  const QSize usual = QPushButton::sizeHint();
  const int letter = fontMetrics().averageCharWidth();
  return {std::max(usual.width(), fontMetrics().horizontalAdvance(text()) + 5 * letter), usual.height() + letter / 2};
}

OptionWidget::OptionWidget(QWidget* parent) : QRadioButton(parent) { setAutoExclusive(false); }

void OptionWidget::keyPressEvent(QKeyEvent* event) {
  const bool back = event->key() == Qt::Key_Up || event->key() == Qt::Key_Left;
  const bool forth = event->key() == Qt::Key_Down || event->key() == Qt::Key_Right;
  if ((back || forth) && stepped) {
    stepped(back ? -1 : 1);
    return;
  }
  QRadioButton::keyPressEvent(event);
}

WrappedCheckBox::WrappedCheckBox(QWidget* parent) : QCheckBox(parent) {
  QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
}

void WrappedCheckBox::setCaption(const QString& caption) {
  if (caption == caption_) {
    return;
  }
  caption_ = caption;
  setAccessibleName(QString(caption).replace(QLatin1String("&&"), QLatin1String("&")));
  setText(wrapped(width()));
  updateGeometry();
}

QSize WrappedCheckBox::sizeHint() const {
  const int whole = fontMetrics().horizontalAdvance(caption_) + 2 * iconSize().width();
  const int width = std::min(whole, kCaptionWidth);
  return {width, heightForWidth(width)};
}

int WrappedCheckBox::heightForWidth(int width) const {
  QStyleOptionButton option;
  initStyleOption(&option);
  const QSize text = fontMetrics().size(Qt::TextShowMnemonic, wrapped(width));
  return style()->sizeFromContents(QStyle::CT_CheckBox, &option, text, this).height();
}

void WrappedCheckBox::resizeEvent(QResizeEvent* event) {
  QCheckBox::resizeEvent(event);
  setText(wrapped(width()));
}

QString WrappedCheckBox::wrapped(int width) const {
  const int beside = style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, this) +
                     style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing, nullptr, this) + 4;
  QTextLayout layout(caption_, font());
  layout.beginLayout();
  QStringList lines;
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(std::max(40, width - beside));
    lines << caption_.mid(line.textStart(), line.textLength()).trimmed();
  }
  layout.endLayout();
  return lines.join(QLatin1Char('\n'));
}

Remark::Remark(QWidget& beside) : beside_(beside) {
  setForegroundRole(QPalette::PlaceholderText);
  setTextFormat(Qt::PlainText);
  setVisible(!beside.isHidden());
  beside.installEventFilter(this);
}

void Remark::setRemark(const QString& remark) {
  setText(fontMetrics().elidedText(remark, Qt::ElideMiddle, kRemarkWidth));
  setToolTip(remark);
  beside_.setAccessibleDescription(remark);
}

bool Remark::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::ShowToParent || event->type() == QEvent::HideToParent) {
    setVisible(event->type() == QEvent::ShowToParent);
  }
  return QLabel::eventFilter(watched, event);
}

LineList::LineList(QWidget* parent) : QListWidget(parent) {
  setAlternatingRowColors(true);
  QObject::connect(this, &QListWidget::currentRowChanged, this, [this](int row) {
    if (!quiet_ && picked && row >= 0) {
      picked(row);
    }
  });
  QObject::connect(this, &QListWidget::itemSelectionChanged, this, [this] {
    if (const QModelIndexList chosen = selectedIndexes(); !quiet_ && !chosen.isEmpty() && chosen.front().row() != currentRow()) {
      setCurrentRow(chosen.front().row());
    }
  });
}

void LineList::setLines(const QStringList& lines, int current) {
  quiet_ = true;
  QStringList shown;
  for (int row = 0; row < count(); ++row) {
    shown << item(row)->text();
  }
  if (shown != lines) {
    clear();
    for (const QString& line : lines) {
      auto* entry = new QListWidgetItem(line, this);  // NOLINT(cppcoreguidelines-owning-memory): the list owns it
      entry->setSizeHint({fontMetrics().horizontalAdvance(line) + kLineAir, fontMetrics().height() + kLineAir});
    }
  }
  setCurrentRow(current);
  quiet_ = false;
}

/// Qt makes the first line current when the focus comes; that is no choice of the user.
void LineList::focusInEvent(QFocusEvent* event) {
  const int chosen = currentRow();
  quiet_ = true;
  QListWidget::focusInEvent(event);
  setCurrentRow(chosen);
  quiet_ = false;
}

void LineList::paintEvent(QPaintEvent* event) {
  QListWidget::paintEvent(event);
  if (hasFocus() && currentRow() < 0) {
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(viewport()->rect().adjusted(0, 0, -1, -1));
  }
}

void LineList::mousePressEvent(QMouseEvent* event) {
  quiet_ = true;  // told once for this click, whether or not the line changes
  QListWidget::mousePressEvent(event);
  quiet_ = false;
  const int row = indexAt(event->position().toPoint()).row();
  if (event->button() == Qt::LeftButton && row >= 0 && picked) {
    picked(row);
  }
}

}  // namespace firmlane
