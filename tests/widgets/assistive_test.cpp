// The windows, worked without mouse and eyes: through the interface that screen readers and switches use.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>

#include "sheet.h"
#include "state/auto_form.h"
#include "state/small_forms.h"

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

TEST_F(Assistive, ChangesOfAPageAndOutcomesAreAnnouncedOnce) {
  FrmAuto wizard(host);
  wizard.Show();
  settle();
  QStringList heard;
  screen.window(wizard)->announced = [&heard](const QWidget& widget) {
    heard << QAccessible::queryAccessibleInterface(const_cast<QWidget*>(&widget))->text(QAccessible::Name);
  };
  wizard.lblMain.Caption = "Downloading";
  settle();
  settle();
  EXPECT_EQ(std::exchange(heard, {}), QStringList("Downloading"));
  wizard.lblOutcome.tell(OutcomeKind::Failure, "The unit has stopped responding.");
  settle();
  EXPECT_EQ(std::exchange(heard, {}), QStringList("Failure: The unit has stopped responding."));
  EXPECT_EQ(seen(wizard.lblOutcome).role(), QAccessible::AlertMessage);
  const auto written = [&] { return (*screen.window(wizard))["lblOutcome"]->findChildren<QLabel*>().front()->text(); };
  EXPECT_EQ(written(), "The unit has stopped responding.");
  wizard.lblMain.Caption = "The unit has stopped responding.\r\r";
  settle();
  EXPECT_EQ(written(), "Failure") << "the page has the words already";
  heard.clear();
  wizard.Progress1.Value = 50;
  settle();
  EXPECT_EQ(heard, QStringList()) << "a bar is looked at, not announced";
}

TEST_F(Assistive, ALinkIsToldAsOneAndCanBePressed) {
  sheet.text.Caption = "Read more";
  sheet.text.OnClick = [this] { log += "followed "; };
  settle();
  EXPECT_EQ(seen(sheet.text).role(), QAccessible::Link);
  act(seen(sheet.text), QAccessibleActionInterface::pressAction());
  EXPECT_EQ(log, "followed ");
}

TEST_F(Assistive, OptionsAreToldInTheirGroup) {
  FrmInHouse panel(host);
  panel.Show();
  settle();
  EXPECT_EQ(seen(panel.optUP(3)).role(), QAccessible::RadioButton);
  EXPECT_EQ(seen(panel.optUP(3)).parent()->role(), QAccessible::Grouping);
  EXPECT_EQ(seen(panel.optUP(3)).parent()->text(QAccessible::Name), "Processor");
}

TEST_F(Assistive, KeysPressWhatTheirCaptionsDoNotShowAndCtrlCTakesTheTextAlong) {
  FrmAuto wizard(host);
  for (CommandButton* button : {&wizard.btnNext, &wizard.btnBack, &wizard.cmdQuit}) {
    button->OnClick = [this, button] { log += button->name() + " "; };
  }
  wizard.Show();
  wizard.lblMain.Caption = "Heading\r\rText\r\r\r";
  wizard.btnNext.Caption = "Go on";
  wizard.btnBack.Disable();
  settle();
  for (const int key : {Qt::Key_N, Qt::Key_B, Qt::Key_X}) {
    // As the window system hands a key on: first it is offered as a shortcut.
    for (QPushButton* button : screen.window(wizard)->findChildren<QPushButton*>()) {
      if (button->shortcut() == QKeySequence(Qt::ALT | key) && button->isEnabled()) {
        button->animateClick();
      }
    }
    run(150 * kMillisecond);
  }
  EXPECT_EQ(log, "btnNext cmdQuit ");
  QKeyEvent copy(QEvent::KeyPress, Qt::Key_C, Qt::ControlModifier);
  QApplication::sendEvent(screen.window(wizard), &copy);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "Heading\n\nText");
}

TEST_F(Assistive, ABoxHasTheSignThatFitsItsTextCanBeTakenAlongAndAnActionLeavesItStanding) {
  struct Case {
    MessageBox box;
    Sign sign;
  };
  for (const Case& one :
       {Case{{.text = "Done"}, Sign::Information}, Case{{.text = "Again?", .buttons = MessageButtons::YesNo}, Sign::Question},
        Case{{.text = "Refused", .sign = MessageIcon::Critical}, Sign::Failure},
        Case{{.text = "Broken", .icon = MessageIcon::Critical}, Sign::Failure},
        Case{{.text = "Careful", .icon = MessageIcon::Exclamation}, Sign::Caution}}) {
    EXPECT_EQ(signOf(one.box), one.sign) << one.box.text;
  }
  int pressed = 0;
  QTimer::singleShot(60, [&] {
    screen.box()->setAction("Copy details", [&] { ++pressed; });
    screen.box()->buttons().back()->click();
    EXPECT_TRUE(screen.box()->isVisible());
    QKeyEvent copy(QEvent::KeyPress, Qt::Key_C, Qt::ControlModifier);
    QApplication::sendEvent(screen.box(), &copy);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "Tolvex Firmlane\n\nline\nline\n");
    host.answer(MessageButton::OK);
  });
  host.showMessage("line\rline");
  EXPECT_EQ(pressed, 1);
}

}  // namespace
}  // namespace firmlane::test
