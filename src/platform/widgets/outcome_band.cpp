#include "platform/widgets/outcome_band.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QPainterPath>

namespace firmlane {

namespace {
constexpr int kPadding = 12;
constexpr int kEdge = 4;
constexpr double kRound = 5;
}  // namespace

OutcomeBand::OutcomeBand(QWidget* parent)
    : QWidget(parent), picture_(new PictureWidget(this)), words_(new TextLabel(this)), action_(new RoomyButton(this)) {
  auto* row = new QHBoxLayout(this);  // NOLINT(cppcoreguidelines-owning-memory): this widget owns its layout
  row->setContentsMargins(kPadding + kEdge, kPadding, kPadding, kPadding);
  row->setSpacing(kPadding);
  row->addWidget(picture_, 0, Qt::AlignTop);
  row->addWidget(words_, 1, Qt::AlignVCenter);
  row->addWidget(action_, 0, Qt::AlignVCenter);
  words_->setFont(fontOf(TypeSize::Text));
  const int side = words_->fontMetrics().height() * 3 / 2;
  picture_->setFixedSize(side, side);
  action_->hide();
  QObject::connect(action_, &QPushButton::clicked, this, [this] {
    if (pressed_) {
      pressed_();
    }
  });
}

void OutcomeBand::tell(Sign sign, const QString& words) {
  if (sign == sign_ && words == told_) {
    return;
  }
  sign_ = sign;
  told_ = words;
  action_->setVisible(!action_->text().isEmpty() && sign == Sign::Failure);
  picture_->setPicture(pictureOf(sign));
  picture_->setAccessibleName(wordOf(sign));
  words_->setText(words);
  setAccessibleName(sign == Sign::None ? words : wordOf(sign) + QStringLiteral(": ") + words);
  update();
}

void OutcomeBand::beBrief(bool brief) {
  const QString text = brief && sign_ != Sign::None ? wordOf(sign_) : told_;
  if (words_->text() != text) {
    words_->setText(text);
  }
}

void OutcomeBand::setAction(const QString& text, std::function<void()> pressed) {
  pressed_ = std::move(pressed);
  action_->setText(text);
  action_->setVisible(!text.isEmpty() && sign_ == Sign::Failure);
}

void OutcomeBand::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QPainterPath band;
  band.addRoundedRect(QRectF(rect()), kRound, kRound);
  painter.setClipPath(band);
  painter.fillPath(band, groundOf(sign_, palette()));
  painter.fillRect(0, 0, kEdge, height(), colourOf(sign_));
}

}  // namespace firmlane
