#include "platform/widgets/activity_panel.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QResizeEvent>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "platform/widgets/activity_words.h"
#include "platform/widgets/looks.h"

namespace firmlane {

namespace {
// In milliseconds. A look and a ring drawn anew cost half a millisecond of the processor: long waits are looked at less often.
constexpr int kLookMs = 200;
constexpr int kTurnMs = 500;
constexpr Micros kShortLimit = 10 * kSecond;
constexpr int kSpace = 16;
// Lines of text across the ring: on a page, and in a window that has other things to show.
constexpr double kLarge = 4.2;
constexpr double kSmall = 2.2;

QLabel* makeLine(QWidget* parent) {
  auto* label = new QLabel(parent);  // NOLINT(cppcoreguidelines-owning-memory): the panel owns it
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setFont(fontOf(TypeSize::Text));
  return label;
}

/// A label is laid out anew with each text: only when it is another one.
void say(QLabel& label, const QString& text) {
  if (label.text() != text) {
    label.setText(text);
    label.setVisible(!text.isEmpty());
  }
}

/// Until the next look. One that counts down over a long limit comes with each new second.
int beatOf(const Activity& activity) {
  const Activity::Phase phase = activity.now();
  if (phase.doing == Doing::Sending || phase.doing == Doing::Downloading || (phase.limit > 0 && phase.limit <= kShortLimit)) {
    return kLookMs;
  }
  return phase.limit == 0 ? kTurnMs : std::max(kLookMs, static_cast<int>(activity.left() % kSecond / kMillisecond) + 1);
}

}  // namespace

ActivityPanel::ActivityPanel(const LayoutContext& context, ActivityScope scope)
    : context_(context),
      scope_(scope),
      strip_(new ProcessorStrip(this)),
      row_(new QWidget(this)),
      picture_(new SwitchPicture(row_)),
      ring_(new RingView(scope == ActivityScope::Pages ? kLarge : kSmall, row_)),
      title_(makeLine(row_)),
      detail_(makeLine(row_)),
      warning_(makeLine(row_)) {
  arrange();
  // A dialog keeps the room free: it must not jump under the pointer.
  QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Maximum);
  policy.setRetainSizeWhenHidden(scope != ActivityScope::Pages);
  setSizePolicy(policy);
  hide();
  timer_.setSingleShot(true);
  connect(&timer_, &QTimer::timeout, this, [this] { look(); });
  if (context_.activity != nullptr) {
    listening_ = context_.activity->listen([this] { changed(); });
    changed();
  }
}

void ActivityPanel::arrange() {
  QFont bold = title_->font();
  bold.setBold(true);
  title_->setFont(bold);

  auto* texts = new QVBoxLayout;
  texts->setSpacing(4);
  texts->addStretch();
  for (QLabel* line : {title_, detail_, warning_}) {
    texts->addWidget(line);
    line->hide();
  }
  texts->addStretch();
  auto* beside = new QHBoxLayout(row_);
  beside->setContentsMargins(0, 0, 0, 0);
  beside->setSpacing(kSpace);
  beside->addWidget(picture_);
  beside->addWidget(ring_);
  beside->addLayout(texts, 1);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kSpace * 3 / 2);
  layout->addWidget(strip_);
  layout->addWidget(row_);
  strip_->hide();
  picture_->hide();
}

/// Changes come by the hundred while an image goes out.
void ActivityPanel::changed() {
  if (!timer_.isActive() || timer_.remainingTime() > kLookMs) {
    const qint64 since = sinceLook_.isValid() ? sinceLook_.elapsed() : kLookMs;
    timer_.start(static_cast<int>(std::clamp<qint64>(kLookMs - since, 0, kLookMs)));
  }
}

void ActivityPanel::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  changed();
}

QSize ActivityPanel::sizeHint() const {
  const QSize hint = QWidget::sizeHint();
  return {hint.width(), std::max(hint.height(), heightForWidth(width()))};
}

void ActivityPanel::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  if (event->oldSize().width() != event->size().width()) {
    updateGeometry();
  }
}

bool ActivityPanel::concerns(Doing doing) const {
  switch (scope_) {
    case ActivityScope::PortSearch:
      return doing == Doing::SearchingPorts;
    case ActivityScope::Reading:
      return doing == Doing::ReadingUnit;
    case ActivityScope::Pages:
      break;
  }
  return doing != Doing::Nothing && doing != Doing::SearchingPorts;
}

void ActivityPanel::look() {
  sinceLook_.start();
  const Activity& activity = *context_.activity;
  const bool busy = concerns(activity.now().doing);
  // Under a message box limits stand still, but what has ended is over.
  const bool held = context_.held && context_.held();
  if (activity.now().since != std::exchange(shownSince_, activity.now().since) || !held) {
    tell(busy ? wordsFor(activity) : ActivityWords{});
  }
  // Out of sight nothing moves; what changes calls again.
  if (busy && isVisible()) {
    timer_.start(beatOf(activity));
  }
}

void ActivityPanel::tell(const ActivityWords& words) {
  const std::vector<ProcessorReport> none;
  const auto& processors = scope_ == ActivityScope::Pages ? context_.activity->processors() : none;
  strip_->tell(processors);
  strip_->setVisible(!processors.empty());
  picture_->setVisible(words.powerSwitch);
  if (words.share < 0) {
    ring_->showTurning(++turn_);
  } else {
    ring_->showShare(words.share, words.middle);
  }
  const bool isNew = title_->text() != words.title && !words.title.isEmpty();
  say(*title_, words.title);
  say(*detail_, words.detail);
  say(*warning_, words.warning);
  row_->setVisible(!words.title.isEmpty() || scope_ != ActivityScope::Pages);
  setVisible(!words.title.isEmpty() || !processors.empty());
  if (isNew) {
    QAccessibleEvent alert(title_, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
  }
}

}  // namespace firmlane
