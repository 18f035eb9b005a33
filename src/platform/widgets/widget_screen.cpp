#include "platform/widgets/widget_screen.h"

#include <QApplication>
#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <iterator>
#include <optional>

#include "platform/widgets/display_text.h"
#include "platform/widgets/form_layouts.h"
#include "platform/widgets/layout_parts.h"

namespace firmlane {

namespace {

constexpr int kTwipsPerPixel = 15;
constexpr qint64 kGatherMs = 16;

struct ButtonKind {
  MessageButton button;
  QMessageBox::StandardButton shown;
};

constexpr ButtonKind kButtons[] = {
    {MessageButton::OK, QMessageBox::Ok},
    {MessageButton::Cancel, QMessageBox::Cancel},
    {MessageButton::Yes, QMessageBox::Yes},
    {MessageButton::No, QMessageBox::No},
};

QMessageBox::StandardButton shownButton(MessageButton button) {
  return std::find_if(std::begin(kButtons), std::end(kButtons),
                      [button](const ButtonKind& kind) { return kind.button == button; })
      ->shown;
}

std::optional<MessageButton> heldButton(QMessageBox::StandardButton button) {
  const auto* found =
      std::find_if(std::begin(kButtons), std::end(kButtons), [button](const ButtonKind& kind) { return kind.shown == button; });
  return found == std::end(kButtons) ? std::nullopt : std::optional(found->button);
}

QMessageBox::Icon shownIcon(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::Critical:
      return QMessageBox::Critical;
    case MessageIcon::Exclamation:
      return QMessageBox::Warning;
    case MessageIcon::Question:
      return QMessageBox::Question;
    case MessageIcon::Information:
      return QMessageBox::Information;
    case MessageIcon::None:
      break;
  }
  return QMessageBox::NoIcon;
}

/// As far as the screen has room.
void moveInside(QWidget& window, QPoint corner) {
  const QRect room = window.screen()->availableGeometry();
  const QSize size = window.frameGeometry().size();
  window.move(std::clamp(corner.x(), room.left(), std::max(room.left(), room.right() + 1 - size.width())),
              std::clamp(corner.y(), room.top(), std::max(room.top(), room.bottom() + 1 - size.height())));
}

/// Where a window stands, as move() takes it: a window of the same size moved there covers it.
QRect placeOf(const QWidget& window) { return {window.pos(), window.size()}; }

}  // namespace

WidgetScreen::WidgetScreen(std::function<std::string(int)> portHint) : portHint_(std::move(portHint)) {
  QGuiApplication::setQuitOnLastWindowClosed(false);
  gathering_.setSingleShot(true);
  QObject::connect(&gathering_, &QTimer::timeout, &gathering_, [this] { refresh(); });
  sinceRefresh_.start();
}

WidgetScreen::~WidgetScreen() {
  pointer_ = Pointer::Normal;
  showPointer();
}

void WidgetScreen::refresh() {
  gathering_.stop();
  sinceRefresh_.restart();
  for (const auto& [form, window] : windows_) {
    window->refresh();
  }
}

FormWindow* WidgetScreen::window(const Form& form) const {
  const auto found = windows_.find(&form);
  return found == windows_.end() ? nullptr : found->second.get();
}

FormWindow& WidgetScreen::windowFor(Form& form) {
  if (FormWindow* known = window(form)) {
    return *known;
  }
  FormWindow& made = *windows_.emplace(&form, std::make_unique<FormWindow>(form)).first->second;
  const WindowRole role = layOut(made, {portHint_, activity_, [this] { return box_ != nullptr; }});
  if (role == WindowRole::Dialog || role == WindowRole::Corner) {
    made.makeDialog();
  }
  made.setProperty("aside", role == WindowRole::Aside);
  made.refreshAll();
  place(made);
  moveAside(made, role);
  return made;
}

/// What does not stand in the middle: the about box, the debug view, and the wizard that comes up beside it.
void WidgetScreen::moveAside(FormWindow& window, WindowRole role) const {
  const QWidget* below = topWindow(&window);
  if (role == WindowRole::Corner && below != nullptr) {
    window.move(below->pos());
  } else if (role == WindowRole::Aside) {
    // Left of the main window's middle by half that window, and by 1 / 2.5 of it.
    const QPoint middle = window.frameGeometry().center();
    moveInside(window, middle - QPoint(kWizardSize.width() * 9 / 10, kWizardSize.height() / 2));
  } else if (role == WindowRole::Main && below != nullptr && below->property("aside").toBool()) {
    moveInside(window, below->frameGeometry().topRight());
  }
}

/// A dialog stands in the middle of the window it came from, and a main window takes the place of the one before.
void WidgetScreen::place(FormWindow& window) const {
  window.resize(window.sizeHint().boundedTo(window.screen()->availableSize()));
  const QWidget* below = topWindow(&window);
  const QRect room = window.screen()->availableGeometry();
  const QPoint centre = (below != nullptr ? placeOf(*below) : lastPlace_.isValid() ? lastPlace_ : room).center();
  QRect frame(QPoint(), window.size());
  frame.moveCenter(centre);
  frame.moveLeft(std::clamp(frame.left(), room.left(), std::max(room.left(), room.right() - frame.width())));
  frame.moveTop(std::clamp(frame.top(), room.top(), std::max(room.top(), room.bottom() - frame.height())));
  window.move(frame.topLeft());
}

QWidget* WidgetScreen::topWindow(const QWidget* except) const {
  if (host_ == nullptr) {
    return nullptr;
  }
  for (const Form* form : host_->onScreen()) {
    FormWindow* candidate = window(*form);
    if (candidate != nullptr && candidate != except && candidate->isVisible()) {
      return candidate;
    }
  }
  return nullptr;
}

void WidgetScreen::formShown(Form& form, bool modal) {
  FormWindow& shown = windowFor(form);
  // Modal to the program's own windows: the demo's bench beside them stays in reach.
  const Qt::WindowModality modality = modal ? Qt::WindowModal : Qt::NonModal;
  if (shown.windowModality() != modality) {
    shown.hide();  // a change of modality takes effect when the window comes up
    shown.setWindowModality(modality);
  }
  if (QWidget* below = topWindow(&shown); below != nullptr && shown.isDialog()) {
    shown.winId();
    shown.windowHandle()->setTransientParent(below->windowHandle());
  }
  shown.refreshAll();
  shown.show();
  shown.raise();
  shown.activateWindow();
}

void WidgetScreen::formHidden(Form& form) {
  if (FormWindow* hidden = window(form)) {
    if (hidden->isVisible() && !hidden->isDialog()) {
      lastPlace_ = placeOf(*hidden);
    }
    hidden->hide();
    handOn();
  }
}

void WidgetScreen::formUnloaded(Form& form) {
  if (windows_.erase(&form) > 0) {
    handOn();
  }
}

/// The window below one that has gone takes the keyboard over: window managers guess wrong when a dialog goes right behind its
/// box. What is none of the forms and boxes keeps it, such as the demo's bench.
void WidgetScreen::handOn() const {
  QWidget* below = topWindow(nullptr);
  const QWidget* active = QApplication::activeWindow();
  if (below != nullptr && below != active && (active == nullptr || qobject_cast<const QDialog*>(active) != nullptr)) {
    below->activateWindow();
  }
}

void WidgetScreen::formChanged(Form& form) {
  if (window(form) != nullptr) {
    gather();
  }
}

void WidgetScreen::controlChanged(Control& control) {
  FormWindow* changed = window(control.form());
  if (changed != nullptr && changed->markStale(control)) {
    gather();
  }
}

/// A stream changes controls thousands of times a second; the eye needs sixty.
void WidgetScreen::gather() {
  if (!gathering_.isActive()) {
    gathering_.start(static_cast<int>(std::max<qint64>(0, kGatherMs - sinceRefresh_.elapsed())));
  }
}

void WidgetScreen::messageBoxShown(const MessageBox& box) {
  refresh();
  const std::vector<MessageButton> buttons = buttonsOf(box.buttons);
  box_ = std::make_unique<QMessageBox>(topWindow(nullptr));
  box_->setWindowTitle(displayText(box.title));
  box_->setTextFormat(Qt::PlainText);
  box_->setText(displayText(box.text));
  box_->setIcon(shownIcon(box.icon));
  for (const MessageButton button : buttons) {
    box_->addButton(shownButton(button));
  }
  QObject::connect(box_.get(), &QMessageBox::finished, box_.get(), [this, escape = buttons.back()] {
    host_->answer(heldButton(box_->standardButton(box_->clickedButton())).value_or(escape));
  });
  box_->setEscapeButton(shownButton(buttons.back()));  // OK alone, Cancel, No
  box_->setDefaultButton(shownButton(buttons.front()));
  box_->setWindowModality(Qt::WindowModal);
  showPointer();
  box_->show();
}

void WidgetScreen::messageBoxClosed() {
  box_.reset();
  showPointer();
}

void WidgetScreen::setPointer(Pointer pointer) {
  pointer_ = pointer;
  showPointer();
}

/// A box that waits for the user shows no hourglass.
void WidgetScreen::showPointer() const {
  const bool wanted = pointer_ == Pointer::Hourglass && !box_;
  const bool shown = QGuiApplication::overrideCursor() != nullptr;
  if (wanted && !shown) {
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
  } else if (!wanted && shown) {
    QGuiApplication::restoreOverrideCursor();
  }
}

ScreenSize WidgetScreen::size() const {
  const QSize pixels = QGuiApplication::primaryScreen()->availableSize();
  return {pixels.width() * kTwipsPerPixel, pixels.height() * kTwipsPerPixel};
}

}  // namespace firmlane
