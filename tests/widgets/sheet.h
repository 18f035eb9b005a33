// A form with one control of each kind, in a real window, worked with mouse and keyboard as the window system sends them.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>

#include "platform/widgets/widget_screen.h"
#include "real_ground.h"

namespace firmlane::test {

struct Sheet : Form {
  Sheet(FormHost& formHost, const std::string& name) : Form(formHost, name, "A sheet") {
    for (const char* caption : {"one", "two", "three"}) {
      choice.add(*this, "choice", caption, choice.group);
    }
    choice(0).Value.setAtStart(true);
  }
  Label text{*this, "text"};
  CommandButton next{*this, "next", "Next >>"};
  CommandButton exit{*this, "exit", "Save & exit"};
  CheckBox mark{*this, "mark", "mark"};
  Frame box{*this, "box", "Frame"};
  CommandButton inside{*this, "inside", "inside", &box};
  OptionArray choice;
  TextBox field{*this, "field"};
  ListBox list{*this, "list"};
  ProgressBar bar{*this, "bar"};
};

struct Windows : RealGround, testing::Test {
  WidgetScreen screen{nullptr};
  FormHost host{queue, screen};
  Sheet sheet{host, "Sheet"};
  Sheet other{host, "Other"};
  std::string log;

  Windows() {
    screen.attach(host);
    sheet.next.OnClick = [this] { log += "next "; };
    sheet.Show();
    settle();
  }
  void settle() {
    run(30 * kMillisecond);
    screen.refresh();
  }
  template <typename W>
  W& widget(const Control& control) {
    return dynamic_cast<W&>(*(*screen.window(control.form()))[control.name()]);
  }
  /// A press of the left button and its release, as the window system sends them.
  void click(QWidget& target, QPoint at) {
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
      QMouseEvent event(type, at, target.mapToGlobal(QPointF(at)), Qt::LeftButton,
                        type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
      QApplication::sendEvent(&target, &event);
    }
    settle();
  }
  void click(QWidget& target) { click(target, {10, target.height() / 2}); }
  void press(QWidget& target, int key, const QString& text = {}) {
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
      QKeyEvent event(type, key, Qt::NoModifier, text);
      QApplication::sendEvent(&target, &event);
    }
  }
};

}  // namespace firmlane::test
