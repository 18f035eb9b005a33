// The few shapes that all layouts are made of.
#pragma once

#include <QBoxLayout>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <initializer_list>

#include "platform/widgets/control_widgets.h"
#include "platform/widgets/form_window.h"

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

/// The widget with its writing larger by a factor, and bold if wished.
inline QWidget* written(QWidget* widget, double factor, bool bold = false) {
  QFont font = widget->font();
  font.setPointSizeF(font.pointSizeF() * factor);
  font.setBold(bold || font.bold());
  widget->setFont(font);
  return widget;
}

/// The page's text: a little larger, with air below it.
inline QWidget* heading(QWidget* widget) {
  widget->setContentsMargins(0, 0, 0, kSpacing);
  return written(widget, 1.1);
}

inline QWidget* dimmed(QWidget* widget) {
  widget->setForegroundRole(QPalette::PlaceholderText);
  return widget;
}

/// The window's whole content: a picture down the left side, the page beside it, a line, and the buttons below.
void frameWizard(FormWindow& window, PictureWidget& cover, QVBoxLayout* page, QLayout* buttons);

}  // namespace firmlane
