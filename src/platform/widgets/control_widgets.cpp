#include "platform/widgets/control_widgets.h"

#include <QChildEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QStyle>
#include <QStyleOptionButton>
#include <QTextLayout>
#include <algorithm>

#include "platform/widgets/accessible_widgets.h"

namespace firmlane {

namespace {

// The width at which a wrapped caption is taken to stand before its window has one.
constexpr int kCaptionLetters = 48;
constexpr int kLeastLetters = 14;
constexpr int kIconAir = 4;
constexpr int kRemarkLetters = 30;
constexpr int kRemarksAbreast = 4;   // on a screen, whatever the size of the writing
constexpr double kLeastCover = 0.6;  // of its usual width
constexpr double kMostCover = 1.6;
constexpr int kLineAir = 8;  // above and below a line of a list

}  // namespace

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

void PictureWidget::followHeight(int usualWidth, int usualHeight) {
  usual_ = {usualWidth, usualHeight};
  setFit(PictureFit::Covering);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Ignored);
  setFixedWidth(usualWidth);
}

void PictureWidget::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  if (!usual_.isEmpty()) {
    const double share = std::clamp(double(height()) / usual_.height(), kLeastCover, kMostCover);
    setFixedWidth(static_cast<int>(usual_.width() * share));
  }
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

RoomyButton::RoomyButton(QWidget* parent) : QPushButton(parent) {
  setSizePolicy({QSizePolicy::Preferred, QSizePolicy::Fixed, QSizePolicy::PushButton});
}

void RoomyButton::setCaption(const QString& caption) {
  setText(caption);
  setShortcut(key_);  // a new text takes the key away
}

void RoomyButton::setKey(Qt::Key letter) {
  key_ = QKeySequence(Qt::ALT | letter);
  setShortcut(key_);
  setToolTip(key_.toString(QKeySequence::NativeText));
}

void RoomyButton::setPicture(const std::string& name, QSize size) {
  picture_ = name;
  pictureSize_ = size;
}

QSize RoomyButton::sizeHint() const {
  const QSize usual = QPushButton::sizeHint();
  const int letter = fontMetrics().averageCharWidth();
  const int width = fontMetrics().horizontalAdvance(text()) + 5 * letter + (picture_.empty() ? 0 : pictureSize_.width() + letter);
  return {std::max(usual.width(), width), std::max(usual.height() + letter / 2, pictureSize_.height() + 2 * letter)};
}

void RoomyButton::paintEvent(QPaintEvent* event) {
  if (picture_.empty()) {
    QPushButton::paintEvent(event);
    return;
  }
  QStyleOptionButton option;
  initStyleOption(&option);
  QPainter painter(this);
  style()->drawControl(QStyle::CE_PushButtonBevel, &option, &painter, this);
  const int air = 2 * fontMetrics().averageCharWidth();
  const QRect picture(QPoint(air, (height() - pictureSize_.height()) / 2), pictureSize_);
  drawPicture(painter, picture, picture_, PictureFit::Whole);
  style()->drawItemText(&painter, rect().adjusted(picture.right() + air, 0, -air, 0), Qt::AlignLeft | Qt::AlignVCenter, palette(),
                        isEnabled(), text(), QPalette::ButtonText);
  if (hasFocus()) {
    QStyleOptionFocusRect focus;
    focus.initFrom(this);
    focus.rect = style()->subElementRect(QStyle::SE_PushButtonFocusRect, &option, this);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
  }
}

ChoiceGroup::ChoiceGroup(const QString& name, QWidget* parent) : QWidget(parent) {
  setProperty(kGroupProperty, true);
  setAccessibleName(name);
}

void ChoiceGroup::childEvent(QChildEvent* event) {
  QWidget::childEvent(event);
  if (event->added() && event->child()->isWidgetType()) {
    event->child()->installEventFilter(this);
    refresh();
  }
}

bool ChoiceGroup::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::ShowToParent || event->type() == QEvent::HideToParent) {
    refresh();
  }
  return QWidget::eventFilter(watched, event);
}

void ChoiceGroup::refresh() {
  const QList<QWidget*> choices = findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
  setVisible(std::any_of(choices.begin(), choices.end(), [](const QWidget* choice) { return !choice->isHidden(); }));
}

QString brokenInto(const QString& caption, const QFont& font, int width) {
  QTextLayout layout(caption, font);
  layout.beginLayout();
  QStringList lines;
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(std::max(40, width));
    lines << caption.mid(line.textStart(), line.textLength()).trimmed();
  }
  layout.endLayout();
  return lines.join(QLatin1Char('\n'));
}

template <typename Button>
Wrapped<Button>::Wrapped(QWidget* parent) : Button(parent) {
  QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
  policy.setHeightForWidth(true);
  this->setSizePolicy(policy);
}

template <typename Button>
void Wrapped<Button>::setCaption(const QString& caption) {
  if (caption == caption_) {
    return;
  }
  caption_ = caption;
  this->setAccessibleName(QString(caption).replace(QLatin1String("&&"), QLatin1String("&")));
  this->setText(wrapped(this->width()));
  this->updateGeometry();
}

template <typename Button>
int Wrapped<Button>::besideCaption() const {
  const QStyle* style = this->style();
  const int icon = this->icon().isNull() ? 0 : this->iconSize().width() + kIconAir;
  return style->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth, nullptr, this) +
         style->pixelMetric(QStyle::PM_RadioButtonLabelSpacing, nullptr, this) + icon + kIconAir;
}

template <typename Button>
QSize Wrapped<Button>::sizeHint() const {
  const QFontMetrics metrics = this->fontMetrics();
  const int whole = metrics.horizontalAdvance(caption_) + besideCaption() + metrics.averageCharWidth();
  const int width = std::min(whole, kCaptionLetters * metrics.averageCharWidth());
  return {width, heightForWidth(width)};
}

template <typename Button>
QSize Wrapped<Button>::minimumSizeHint() const {
  const QSize usual = sizeHint();
  return {std::min(usual.width(), kLeastLetters * this->fontMetrics().averageCharWidth()), this->fontMetrics().height()};
}

template <typename Button>
int Wrapped<Button>::heightForWidth(int width) const {
  QStyleOptionButton option;
  this->initStyleOption(&option);
  const QSize text = this->fontMetrics().size(Qt::TextShowMnemonic, wrapped(width));
  return this->style()->sizeFromContents(QStyle::CT_CheckBox, &option, text, this).height();
}

template <typename Button>
void Wrapped<Button>::resizeEvent(QResizeEvent* event) {
  Button::resizeEvent(event);
  this->setText(wrapped(this->width()));
}

template class Wrapped<QCheckBox>;
template class Wrapped<QRadioButton>;

OptionWidget::OptionWidget(QWidget* parent) : Wrapped(parent) { setAutoExclusive(false); }

void OptionWidget::keyPressEvent(QKeyEvent* event) {
  const bool back = event->key() == Qt::Key_Up || event->key() == Qt::Key_Left;
  const bool forth = event->key() == Qt::Key_Down || event->key() == Qt::Key_Right;
  if ((back || forth) && stepped) {
    stepped(back ? -1 : 1);
    return;
  }
  QRadioButton::keyPressEvent(event);
}

Remark::Remark(QAbstractButton& beside) : beside_(beside) {
  setTextFormat(Qt::PlainText);
  setVisible(!beside.isHidden());
  beside.installEventFilter(this);
}

void Remark::setRemark(const QString& remark, bool present) {
  if (!text().isEmpty() && toolTip() == remark) {
    return;
  }
  QFont writing = font();
  writing.setBold(present);
  setFont(writing);
  setForegroundRole(present ? QPalette::WindowText : QPalette::PlaceholderText);
  const int room =
      std::min(kRemarkLetters * fontMetrics().averageCharWidth(), screen()->availableSize().width() / kRemarksAbreast);
  setText(fontMetrics().elidedText(remark, Qt::ElideMiddle, room));
  setToolTip(remark);
  beside_.setAccessibleDescription(remark);
  beside_.setIcon(pictureIcon(present ? "plug" : "nothing"));  // the empty one keeps the captions in line
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
    const QIcon release = pictureIcon("release");
    for (const QString& line : lines) {
      // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): the list owns it
      auto* entry = new QListWidgetItem(release, line, this);
      entry->setSizeHint({fontMetrics().horizontalAdvance(line) + 4 * kLineAir, fontMetrics().height() + kLineAir});
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
