// The few shapes that all layouts are made of.
#pragma once

#include <QBoxLayout>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <initializer_list>

#include "platform/widgets/button_row.h"
#include "platform/widgets/control_widgets.h"
#include "platform/widgets/form_window.h"
#include "platform/widgets/looks.h"

namespace firmlane {

inline constexpr int kMargin = 18;
inline constexpr int kSpacing = 10;
/// In which a wizard's window comes up.
inline constexpr QSize kWizardSize(780, 560);

template <typename Layout>
Layout* spaced(Layout* layout) {
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kSpacing);
  return layout;
}

inline QVBoxLayout* column(std::initializer_list<QWidget*> widgets = {}) {
  auto* layout = spaced(new QVBoxLayout);
  for (QWidget* widget : widgets) {
    layout->addWidget(widget);
  }
  return layout;
}

/// Widgets side by side; a null widget takes the room that is left.
inline QHBoxLayout* row(std::initializer_list<QWidget*> widgets) {
  auto* layout = spaced(new QHBoxLayout);
  for (QWidget* widget : widgets) {
    if (widget == nullptr) {
      layout->addStretch();
    } else {
      layout->addWidget(widget);
    }
  }
  return layout;
}

inline QFrame* line() {
  auto* frame = new QFrame;
  frame->setFrameShape(QFrame::HLine);
  frame->setFrameShadow(QFrame::Sunken);
  return frame;
}

/// The widget written in one of the three sizes, and bold if wished.
inline QWidget* written(QWidget* widget, TypeSize size, bool bold = false) {
  QFont font = fontOf(size);
  font.setBold(bold || font.bold());
  font.setUnderline(widget->font().underline());
  widget->setFont(font);
  return widget;
}

/// The page's text, with air below it.
inline QWidget* pageText(QWidget* widget) {
  static_cast<TextLabel*>(widget)->becomePageText();
  widget->setContentsMargins(0, 0, 0, kSpacing);
  return widget;
}

inline QWidget* dimmed(QWidget* widget) {
  widget->setForegroundRole(QPalette::PlaceholderText);
  return widget;
}

/// Choices of one group below each other.
QWidget* choices(FormWindow& window, const char* group, std::initializer_list<std::string> options);

/// The window's whole content: a picture down the left side, the page beside it, a line, and the buttons below. Where the screen
/// has no room for it the page scrolls; the buttons stay.
void frameWizard(FormWindow& window, PictureWidget& cover, QVBoxLayout* page, ButtonRow* buttons);
/// A dialog's: the page, a line if they are `parted`, and the buttons below, if there are any.
void frameDialog(FormWindow& window, QVBoxLayout* page, ButtonRow* buttons, bool parted = false);

}  // namespace firmlane
