// The windows, worked without mouse and eyes: through the interface that screen readers and switches use.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QCheckBox>
#include <QLineEdit>
#include <QListWidget>
#include <QRadioButton>

#include "sheet.h"

namespace firmlane::test {
namespace {

struct Assistive : Windows {
  QAccessibleInterface& seen(const Control& control) {
    return *QAccessible::queryAccessibleInterface((*screen.window(control.form()))[control.name()]);
  }
  void act(QAccessibleInterface& target, const QString& action) {
    ASSERT_NE(target.actionInterface(), nullptr);
    target.actionInterface()->doAction(action);
    run(150 * kMillisecond);  // a press is shown as such for a moment
    settle();
  }
};

/// Whatever way a tool takes, look and form stay one.
TEST_F(Assistive, WhatAToolChangesTheFormHolds) {
  for (const QString& action : {QAccessibleActionInterface::toggleAction(), QAccessibleActionInterface::pressAction()}) {
    sheet.mark.Value = 0;
    sheet.choice(0).Value = true;
    settle();
    act(seen(sheet.mark), action);
    EXPECT_TRUE(sheet.mark.checked()) << action.toStdString();
    EXPECT_TRUE(widget<QCheckBox>(sheet.mark).isChecked());
    act(seen(sheet.choice(2)), action);
    EXPECT_EQ(sheet.choice.selected(), 2) << action.toStdString();
    EXPECT_FALSE(widget<QRadioButton>(sheet.choice(0)).isChecked()) << "one of a group";
    act(seen(sheet.choice(2)), action);
    EXPECT_EQ(sheet.choice.selected(), 2) << "an option is not taken back";
    EXPECT_TRUE(widget<QRadioButton>(sheet.choice(2)).isChecked());
  }
  seen(sheet.field).setText(QAccessible::Value, "4711");
  settle();
  EXPECT_EQ(sheet.field.Text.get(), "4711");

  sheet.list.Lines = {"5.01", "5.02"};
  sheet.list.OnClick = [this] { log += std::to_string(sheet.list.ListIndex) + " "; };
  settle();
  act(*seen(sheet.list).child(1), QAccessibleActionInterface::toggleAction());
  EXPECT_EQ(sheet.list.ListIndex, 1);
  EXPECT_EQ(log, "1 ") << "one choice, told once";
}

TEST_F(Assistive, AToolCannotChangeWhatAModalFormBlocks) {
  QTimer::singleShot(60, [&] {
    act(seen(sheet.mark), QAccessibleActionInterface::toggleAction());
    screen.refresh();
    EXPECT_FALSE(widget<QCheckBox>(sheet.mark).isChecked()) << "look and form are one";
    host.close(other);
  });
  other.ShowModal();
  EXPECT_FALSE(sheet.mark.checked());
}

}  // namespace
}  // namespace firmlane::test
