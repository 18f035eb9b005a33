#include "platform/widgets/form_window.h"

#include <QAccessible>
#include <QClipboard>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <algorithm>
#include <stdexcept>

#include "platform/widgets/control_widgets.h"
#include "platform/widgets/display_text.h"
#include "platform/widgets/outcome_band.h"

namespace firmlane {

FormWindow::FormWindow(Form& form) : form_(form) {
  setWindowFlags(Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowMinMaxButtonsHint |
                 Qt::WindowCloseButtonHint);
  setObjectName(QString::fromStdString(form.name()));
}

FormWindow::~FormWindow() = default;

void FormWindow::makeDialog() {
  setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
}

QWidget* FormWindow::operator[](std::string_view name) {
  Control* control = form_.control(name);
  if (control == nullptr) {
    throw std::out_of_range(form_.name() + " has no control " + std::string(name));
  }
  return binding(*control).widget();
}

QWidget* FormWindow::described(std::string_view name, const char* description) {
  QWidget* widget = (*this)[name];
  widget->setAccessibleName(QLatin1String(description));
  return widget;
}

void FormWindow::nameBy(std::string_view label, std::string_view field) {
  const auto* text = qobject_cast<QLabel*>((*this)[label]);
  (*this)[field]->setAccessibleName(text == nullptr ? QString() : text->text());
}

void FormWindow::setKey(std::string_view button, Qt::Key letter) {
  if (auto* roomy = dynamic_cast<RoomyButton*>((*this)[button])) {
    roomy->setKey(letter);
  }
}

void FormWindow::announce(std::string_view label) { announced_.push_back({(*this)[label], {}}); }

void FormWindow::tellOnce(std::string_view band, std::string_view text) {
  band_ = dynamic_cast<OutcomeBand*>((*this)[band]);
  bandText_ = qobject_cast<QLabel*>((*this)[text]);
}

void FormWindow::shortenBand() {
  if (band_ != nullptr && bandText_ != nullptr) {
    band_->beBrief(!bandText_->isHidden() && bandText_->text().simplified() == band_->words().simplified());
  }
}

QString FormWindow::pageText() const {
  QStringList texts;
  for (const QLabel* label : findChildren<QLabel*>()) {
    if (dynamic_cast<const TextLabel*>(label) != nullptr && label->isVisible() && !label->text().trimmed().isEmpty()) {
      texts << label->text().trimmed();
    }
  }
  return texts.join(QStringLiteral("\n\n"));
}

/// What a change of page means is told in one go, and a new page begins at its top.
void FormWindow::tellChanges() {
  for (Announced& one : announced_) {
    const QAccessibleInterface* told = QAccessible::queryAccessibleInterface(one.widget);
    const QString text = one.widget->isVisible() && told != nullptr ? told->text(QAccessible::Name) : QString();
    if (std::exchange(one.told, text) == text || text.trimmed().isEmpty()) {
      continue;
    }
    QAccessibleEvent alert(one.widget, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
    if (announced) {
      announced(*one.widget);
    }
    if (page_ != nullptr) {
      page_->verticalScrollBar()->setValue(0);
    }
  }
}

ControlBinding& FormWindow::binding(Control& control) {
  if (const auto found = bindings_.find(&control); found != bindings_.end()) {
    return *found->second;
  }
  QWidget* parent = control.frame() == nullptr ? this : binding(*control.frame()).widget();
  auto made = bindControl(control, parent);
  made->widget()->setObjectName(QString::fromStdString(control.name()));
  made->touched = [this, &control] {
    // Comes with the next change that the screen shows, or with the event that the user has just set off.
    markStale(control);
    QMetaObject::invokeMethod(
        this, [this] { refresh(); }, Qt::QueuedConnection);
  };
  made->refresh();
  if (lastMade_ != nullptr) {
    setTabOrder(lastMade_, made->widget());
  }
  lastMade_ = made->widget();
  return *bindings_.emplace(&control, std::move(made)).first->second;
}

void FormWindow::setDefaultButton(std::string_view name) {
  if (auto* button = qobject_cast<QPushButton*>((*this)[name])) {
    defaults_.push_back(button);
    if (defaults_.size() == 1) {
      button->setFocus();
    }
  }
}

void FormWindow::chooseDefault() {
  const auto shown =
      std::find_if(defaults_.rbegin(), defaults_.rend(), [](const QPushButton* button) { return !button->isHidden(); });
  if (shown != defaults_.rend() && !(*shown)->isDefault()) {
    (*shown)->setDefault(true);
  }
}

QWidget* FormWindow::firstField() {
  for (QWidget* next = nextInFocusChain(); next != this; next = next->nextInFocusChain()) {
    const auto* option = qobject_cast<QRadioButton*>(next);
    const bool field = (next->focusPolicy() & Qt::TabFocus) != 0 && qobject_cast<QPushButton*>(next) == nullptr &&
                       qobject_cast<QLabel*>(next) == nullptr && (option == nullptr || option->isChecked());
    if (field && next->isEnabled() && next->isVisibleTo(this)) {
      return next;
    }
  }
  return nullptr;
}

/// The first field of a new page takes the focus from a button or from nowhere. Focus that is left nowhere goes to Next as soon
/// as that can be pressed, and never to another button: Return would press it.
void FormWindow::chooseFocus() {
  QWidget* field = firstField();
  const bool isNew = field != std::exchange(firstField_, field);
  const bool nowhere = focusWidget() == nullptr || focusWidget() == this;
  if (field != nullptr && isNew && (nowhere || qobject_cast<QPushButton*>(focusWidget()) != nullptr)) {
    field->setFocus();
  } else if (nowhere) {
    for (QPushButton* button : defaults_) {
      if (button->isDefault() && button->isEnabled() && !button->isHidden()) {
        button->setFocus();
      }
    }
  }
}

bool FormWindow::markStale(const Control& control) {
  const auto found = bindings_.find(&control);
  if (found == bindings_.end()) {
    return false;
  }
  if (!found->second->stale) {
    found->second->stale = true;
    stale_.push_back(found->second.get());
  }
  return true;
}

void FormWindow::refresh() {
  setWindowTitle(displayText(form_.Caption));
  if (stale_.empty()) {
    return;
  }
  if (isVisible()) {
    middle_ = frameGeometry().center();
  }
  const std::vector<ControlBinding*> stale = std::exchange(stale_, {});
  for (ControlBinding* binding : stale) {
    binding->refresh();
  }
  shortenBand();
  chooseDefault();
  chooseFocus();
  tellChanges();
}

void FormWindow::refreshAll() {
  for (const auto& [control, binding] : bindings_) {
    markStale(*control);
  }
  refresh();
}

bool FormWindow::event(QEvent* event) {
  const bool done = QDialog::event(event);
  if (event->type() == QEvent::LayoutRequest) {
    makeRoom();
  }
  return done;
}

/// What the window's content needs at that width. Wrapped texts need more height than the layout's least size knows of, and the
/// page more than the part of it that must always be seen.
QSize FormWindow::neededSize(int width) const {
  QSize needed = layout()->totalMinimumSize();
  width = std::max(width, needed.width());
  int height = layout()->hasHeightForWidth() ? layout()->totalMinimumHeightForWidth(width) : needed.height();
  if (page_ != nullptr && page_->widget() != nullptr) {
    const QLayout* page = page_->widget()->layout();
    const int pageWidth = page_->width() + width - this->width();
    const int whole =
        std::max(page->hasHeightForWidth() ? page->totalHeightForWidth(pageWidth) : 0, page->totalMinimumSize().height());
    height += std::max(0, whole - page_->minimumSizeHint().expandedTo(page_->minimumSize()).height());
  }
  return {width, height};
}

void FormWindow::makeRoom() {
  if (layout() == nullptr || isMaximized() || isFullScreen()) {
    return;
  }
  layout()->activate();
  if (page_ != nullptr && page_->widget() != nullptr) {
    page_->widget()->layout()->activate();
  }
  const QRect whole = screen()->availableGeometry();
  const QSize room = whole.size() - (frameGeometry().size() - size());
  QSize needed = neededSize(std::min(width(), room.width()));
  if (page_ != nullptr && needed.height() > room.height()) {
    const int bar = page_->verticalScrollBar()->sizeHint().width();  // takes nothing from the page
    needed.setWidth(std::max(needed.width(), layout()->totalMinimumSize().width() + bar));
  }
  const QSize wanted = size().expandedTo(needed).boundedTo(room);
  const QPoint middle = std::exchange(middle_, {}).value_or(frameGeometry().center());
  const bool hasGrown = middle != frameGeometry().center();  // by its layout, on its own
  if (wanted == size() && !hasGrown) {
    return;
  }
  resize(wanted);
  if (!isVisible()) {
    return;
  }
  const QRect frame = frameGeometry();
  const QPoint corner = isDialog() ? middle - QPoint(frame.width() / 2, frame.height() / 2) : pos();
  const QPoint inside(std::max(whole.left(), std::min(corner.x(), whole.right() + 1 - frame.width())),
                      std::max(whole.top(), std::min(corner.y(), whole.bottom() + 1 - frame.height())));
  if (inside != pos()) {
    move(inside);
  }
}

/// The page scrolls by itself when Tab stays on it, not when it comes from the buttons.
bool FormWindow::focusNextPrevChild(bool next) {
  const bool moved = QDialog::focusNextPrevChild(next);
  if (moved && page_ != nullptr && page_->isAncestorOf(focusWidget())) {
    page_->ensureWidgetVisible(focusWidget());
  }
  return moved;
}

void FormWindow::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    QGuiApplication::clipboard()->setText(pageText());
    return;
  }
  const bool up = event->key() == Qt::Key_PageUp;
  if (page_ != nullptr && (up || event->key() == Qt::Key_PageDown)) {
    page_->verticalScrollBar()->triggerAction(up ? QScrollBar::SliderPageStepSub : QScrollBar::SliderPageStepAdd);
    return;
  }
  QDialog::keyPressEvent(event);
}

void FormWindow::reject() {
  if (isDialog()) {
    form_.host().close(form_);
  }
}

void FormWindow::closeEvent(QCloseEvent* event) {
  event->ignore();  // the form decides, and hides or unloads its window then
  form_.host().close(form_);
}

}  // namespace firmlane
