#include "platform/widgets/box_window.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <algorithm>
#include <iterator>
#include <optional>

#include "platform/widgets/display_text.h"

namespace firmlane {

namespace {

constexpr int kSignSide = 44;

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

}  // namespace

Sign signOf(const MessageBox& box) {
  switch (box.sign != MessageIcon::None ? box.sign : box.icon) {
    case MessageIcon::Critical:
      return Sign::Failure;
    case MessageIcon::Exclamation:
      return Sign::Caution;
    case MessageIcon::Question:
      return Sign::Question;
    case MessageIcon::Information:
      return Sign::Information;
    case MessageIcon::None:
      break;
  }
  return box.buttons == MessageButtons::OK ? Sign::Information : Sign::Question;
}

BoxWindow::BoxWindow(const MessageBox& box, QWidget* parent) : QMessageBox(parent) {
  const std::vector<MessageButton> buttons = buttonsOf(box.buttons);
  setWindowTitle(displayText(box.title));
  setTextFormat(Qt::PlainText);
  setText(displayText(box.text));
  setIconPixmap(signPixmap(signOf(box), kSignSide, devicePixelRatioF()));
  if (auto* picture = findChild<QLabel*>(QStringLiteral("qt_msgboxex_icon_label"))) {
    picture->setAccessibleName(wordOf(signOf(box)));
  }
  for (const MessageButton button : buttons) {
    addButton(shownButton(button));
  }
  QObject::connect(this, &QMessageBox::finished, this, [this, escape = buttons.back()] {
    if (answered) {
      answered(heldButton(standardButton(clickedButton())).value_or(escape));
    }
  });
  setEscapeButton(shownButton(buttons.back()));  // OK alone, Cancel, No
  setDefaultButton(shownButton(buttons.front()));
  setWindowModality(Qt::WindowModal);
}

void BoxWindow::setAction(const QString& text, std::function<void()> pressed) {
  QPushButton* button = addButton(text, QMessageBox::ActionRole);
  button->disconnect();  // a box closes with any of its buttons otherwise
  QObject::connect(button, &QPushButton::clicked, this, std::move(pressed));
}

void BoxWindow::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    QGuiApplication::clipboard()->setText(windowTitle() + QStringLiteral("\n\n") + text() + QLatin1Char('\n'));
    return;
  }
  QMessageBox::keyPressEvent(event);
}

}  // namespace firmlane
