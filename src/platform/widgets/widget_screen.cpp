#include "platform/widgets/widget_screen.h"

#include <QApplication>
#include <QClipboard>
#include <QScreen>
#include <QWindow>
#include <algorithm>

#include "platform/widgets/accessible_widgets.h"
#include "platform/widgets/form_layouts.h"
#include "platform/widgets/layout_parts.h"
#include "platform/widgets/looks.h"
#include "platform/widgets/outcome_band.h"
#include "platform/widgets/window_place.h"

namespace firmlane {

namespace {

constexpr int kTwipsPerPixel = 15;
constexpr qint64 kGatherMs = 16;

// When a window has come up, the window manager tells its frame; some take their time.
constexpr int kFrameTries = 4;
constexpr int kFrameWaitMs = 40;

}  // namespace

WidgetScreen::WidgetScreen(std::function<std::string(int)> portHint) : portHint_(std::move(portHint)) {
  QGuiApplication::setQuitOnLastWindowClosed(false);
  useLooks();
  useAccessibleWidgets();
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
  const WindowRole role = roles_[&form] = layOut(made, {portHint_, activity_, [this] { return box_ != nullptr; }, copyDetails()});
  if (auto* band = made.has("lblOutcome") ? dynamic_cast<OutcomeBand*>(made["lblOutcome"]) : nullptr;
      band != nullptr && details_) {
    band->setAction(QString::fromLatin1(kCopyDetails), copyDetails());
  }
  if (role == WindowRole::Dialog || role == WindowRole::Corner) {
    made.makeDialog();
  }
  made.setProperty("aside", role == WindowRole::Aside);
  made.refreshAll();
  made.resize(made.sizeHint().boundedTo(made.screen()->availableSize().shrunkBy(frameOf(made))));
  place(made);
  return made;
}

/// A form that asks for it stands in the middle of its screen, else in the middle of the window below it. What stands aside are
/// the about box, the debug view, and the wizard that comes up beside that.
void WidgetScreen::place(FormWindow& window) const {
  const QWidget* below = topWindow(&window);
  const QRect around = below != nullptr ? below->frameGeometry() : lastPlace_;
  const QRect room = around.isValid() ? roomAround(around.center()) : window.screen()->availableGeometry();
  const WindowRole role = roles_.at(&window.form());
  if (role == WindowRole::Corner && below != nullptr) {
    placeAt(window, below->pos(), room);
  } else if (role == WindowRole::Aside) {
    // Left of the main window's middle by half that window, and by 1 / 2.5 of it.
    placeAt(window, room.center() - QPoint(kWizardSize.width() * 9 / 10, kWizardSize.height() / 2), room);
  } else if (role == WindowRole::Main && below != nullptr && below->property("aside").toBool()) {
    placeAt(window, below->frameGeometry().topRight(), room);
  } else {
    const bool onScreen = centred_.contains(&window.form()) || !around.isValid();
    placeAround(window, (onScreen ? room : around).center(), room);
  }
}

/// Only when a window is up does the window manager tell how wide its frame is. A window that nobody has moved since is then put
/// where it belongs with that frame.
void WidgetScreen::placeAgain(FormWindow& window, int tries) {
  QTimer::singleShot(kFrameWaitMs, &window, [this, &window, tries, put = window.pos()] {
    if (!window.isVisible() || window.isMaximized() || window.pos() != put) {
      return;
    }
    if (!window.windowHandle()->frameMargins().isNull()) {
      window.makeRoom();
      place(window);
    } else if (tries > 1) {
      placeAgain(window, tries - 1);
    }
  });
}

void WidgetScreen::formCentred(Form& form) {
  centred_.insert(&form);
  FormWindow* shown = window(form);
  if (shown != nullptr && !shown->isMaximized()) {
    place(*shown);
  }
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
  const bool comesUp = !shown.isVisible();
  // One main window takes over from the other as the user had it.
  if (comesUp && roles_.at(&form) == WindowRole::Main && lastPlace_.isValid()) {
    shown.setWindowState(lastMaximised_ ? Qt::WindowMaximized : Qt::WindowNoState);
  }
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
  if (comesUp) {
    placeAgain(shown, kFrameTries);
  }
}

void WidgetScreen::formHidden(Form& form) {
  if (FormWindow* hidden = window(form)) {
    if (hidden->isVisible() && !hidden->isDialog()) {
      lastPlace_ = hidden->frameGeometry();
      lastMaximised_ = hidden->isMaximized();
    }
    hidden->hide();
    handOn();
  }
}

void WidgetScreen::formUnloaded(Form& form) {
  centred_.erase(&form);
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

/// Empty where there is nothing to copy.
std::function<void()> WidgetScreen::copyDetails() const {
  if (!details_) {
    return {};
  }
  return [this] { QGuiApplication::clipboard()->setText(QString::fromStdString(details_())); };
}

void WidgetScreen::messageBoxShown(const MessageBox& box) {
  refresh();
  box_ = std::make_unique<BoxWindow>(box, topWindow(nullptr));
  box_->answered = [this](MessageButton button) { host_->answer(button); };
  if (details_ && signOf(box) == Sign::Failure) {
    box_->setAction(QString::fromLatin1(kCopyDetails), copyDetails());
  }
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
