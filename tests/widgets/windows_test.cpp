// The windows, worked as a user works them: with mouse and keyboard on real widgets.
#include <gmock/gmock.h>

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTimer>

#include "platform/widgets/display_text.h"
#include "sheet.h"
#include "state/auto_form.h"
#include "state/frm_port.h"
#include "state/small_forms.h"

namespace firmlane::test {
namespace {

TEST(DisplayTextTest, EveryKindOfLineEndIsOneBreakAndBlanksStay) {
  EXPECT_EQ(displayText("a\r\rb"), "a\n\nb");
  EXPECT_EQ(displayText("a\r\nb\r\n\r\n  c\n"), "a\nb\n\n  c\n");
  EXPECT_EQ(displayText("a\r\r\nb\r"), "a\n\nb\n");
  EXPECT_EQ(displayText("J\xFCrgen"), QString::fromUtf8("Jürgen"));
  EXPECT_EQ(displayText("Caf\xE9"), QString::fromUtf8("Café"));
  EXPECT_EQ(displayText("/home/J\xC3\xBCrgen"), QString::fromUtf8("/home/Jürgen"));
  EXPECT_EQ(typedText(QString::fromUtf8("Jürgen")), "J\xFCrgen");
}

TEST_F(Windows, WidgetsFollowTheControls) {
  sheet.text.Caption = "first\r\n   second\r\rthird";
  sheet.next.Caption = "Go & on";
  sheet.next.Disable();
  sheet.exit.Hide();
  sheet.box.Disable();
  sheet.choice(2).Value = true;
  sheet.list.Lines = {"5.01", "5.02"};
  sheet.list.ListIndex = 1;
  sheet.bar.Max = 7;
  sheet.bar.Value = 3;
  sheet.Caption = "Another title";
  settle();
  EXPECT_EQ(widget<QLabel>(sheet.text).text(), "first\n   second\n\nthird");
  EXPECT_EQ(widget<QPushButton>(sheet.next).text(), "Go && on") << "an ampersand is no shortcut";
  EXPECT_FALSE(widget<QPushButton>(sheet.next).isEnabled());
  EXPECT_FALSE(widget<QPushButton>(sheet.exit).isVisible());
  EXPECT_FALSE(widget<QPushButton>(sheet.inside).isEnabled()) << "a frame disables what stands in it";
  EXPECT_TRUE(widget<QRadioButton>(sheet.choice(2)).isChecked());
  EXPECT_FALSE(widget<QRadioButton>(sheet.choice(0)).isChecked());
  EXPECT_EQ(widget<QListWidget>(sheet.list).currentRow(), 1);
  EXPECT_EQ(widget<QProgressBar>(sheet.bar).maximum(), 7);
  EXPECT_EQ(widget<QProgressBar>(sheet.bar).value(), 3);
  EXPECT_EQ(screen.window(sheet)->windowTitle(), "Another title");
}

TEST_F(Windows, ClicksReachTheHandlersAndTheWidgetShowsWhatTheFormHolds) {
  click(widget<QPushButton>(sheet.next));
  EXPECT_EQ(log, "next ");
  sheet.mark.OnClick = [this] { log += sheet.mark.checked() ? "marked " : "cleared "; };
  click(widget<QCheckBox>(sheet.mark));
  click(widget<QCheckBox>(sheet.mark));
  EXPECT_EQ(log, "next marked cleared ");
  EXPECT_FALSE(widget<QCheckBox>(sheet.mark).isChecked());

  sheet.choice(1).OnClick = [this] { sheet.choice(2).Value = true; };
  click(widget<QRadioButton>(sheet.choice(1)));
  EXPECT_EQ(sheet.choice.selected(), 2);
  EXPECT_FALSE(widget<QRadioButton>(sheet.choice(1)).isChecked()) << "what the form decides stands, not the click";
  press(widget<QRadioButton>(sheet.choice(2)), Qt::Key_Down);
  press(widget<QRadioButton>(sheet.choice(1)), Qt::Key_Up);
  settle();
  EXPECT_EQ(sheet.choice.selected(), 0) << "arrow keys step through the options";
}

TEST_F(Windows, AListTellsEveryClickAndEveryStep) {
  sheet.list.Lines = {"5.01", "5.02", "5.03"};
  sheet.list.OnClick = [this] { log += std::to_string(sheet.list.ListIndex) + " "; };
  settle();
  auto& list = widget<QListWidget>(sheet.list);
  QFocusEvent byTab(QEvent::FocusIn, Qt::TabFocusReason);
  QApplication::sendEvent(&list, &byTab);
  settle();
  EXPECT_EQ(log, "") << "coming by with Tab is no choice";
  const QPoint second = list.visualItemRect(list.item(1)).center();
  click(*list.viewport(), second);
  click(*list.viewport(), second);
  press(list, Qt::Key_Down);
  settle();
  EXPECT_EQ(log, "1 1 2 ");
}

TEST_F(Windows, TypingIsNeverOverwrittenByWhatTheFormHeldAMomentAgo) {
  auto& field = widget<QLineEdit>(sheet.field);
  for (const char letter : std::string("4711")) {
    press(field, Qt::Key_0, QString(QLatin1Char(letter)));
    screen.refresh();
  }
  EXPECT_EQ(field.text(), "4711");
  settle();
  EXPECT_EQ(sheet.field.Text.get(), "4711");
  sheet.field.Text = "12";
  settle();
  EXPECT_EQ(field.text(), "12");
}

TEST_F(Windows, AMessageBoxHoldsEverythingAndAnswers) {
  struct Case {
    MessageButtons buttons;
    int key;
    MessageButton answer;
  };
  for (const Case& one :
       {Case{MessageButtons::OK, Qt::Key_Escape, MessageButton::OK},
        Case{MessageButtons::OKCancel, Qt::Key_Escape, MessageButton::Cancel},
        Case{MessageButtons::OKCancel, Qt::Key_Return, MessageButton::OK},
        Case{MessageButtons::YesNo, Qt::Key_Escape, MessageButton::No}, Case{MessageButtons::YesNo, 0, MessageButton::No}}) {
    int ticks = 0;
    Timer timer(queue);
    timer.OnTimer = [&] { ++ticks; };
    timer.start(10);
    QTimer::singleShot(100, [&] {
      EXPECT_EQ(host.refusal(sheet.next), "message box is up");
      EXPECT_EQ(screen.box()->text(), "line\nline");
      if (one.key == 0) {
        screen.box()->close();
      } else {
        press(*screen.box(), one.key);
      }
    });
    EXPECT_EQ(host.showMessageBox({.text = "line\rline", .buttons = one.buttons}), one.answer);
    EXPECT_EQ(ticks, 0);
    EXPECT_EQ(screen.box(), nullptr);
  }
}

TEST_F(Windows, AModalFormBlocksTheOthersUntilItIsUnloaded) {
  QTimer::singleShot(60, [&] {
    EXPECT_EQ(screen.window(other)->windowModality(), Qt::WindowModal);
    widget<QPushButton>(sheet.next).click();
    QTimer::singleShot(60, [&] { press(*screen.window(other), Qt::Key_Escape); });
  });
  other.ShowModal();
  EXPECT_EQ(log, "");
  EXPECT_EQ(screen.window(other), nullptr);
  click(widget<QPushButton>(sheet.next));
  EXPECT_EQ(log, "next ");
}

TEST_F(Windows, ClosingAWindowIsTheFormsToDecide) {
  bool refuse = true;
  sheet.OnQueryUnload = [&](bool& cancel) { cancel = refuse; };
  screen.window(sheet)->close();
  settle();
  ASSERT_NE(screen.window(sheet), nullptr);
  EXPECT_TRUE(screen.window(sheet)->isVisible());
  refuse = false;
  screen.window(sheet)->close();
  settle();
  EXPECT_EQ(screen.window(sheet), nullptr);
  EXPECT_FALSE(sheet.Loaded);
}

TEST_F(Windows, ADisabledNextDoesNotHandItsFocusToExit) {
  widget<QPushButton>(sheet.next).setFocus();
  sheet.next.Disable();
  settle();
  EXPECT_NE(screen.window(sheet)->focusWidget(), &widget<QPushButton>(sheet.exit));
  sheet.next.Enable();
  settle();
  EXPECT_EQ(screen.window(sheet)->focusWidget(), &widget<QPushButton>(sheet.next));
}

TEST_F(Windows, TheHourglassGivesWayToAMessageBox) {
  host.setPointer(Pointer::Hourglass);
  EXPECT_NE(QGuiApplication::overrideCursor(), nullptr);
  QTimer::singleShot(20, [&] {
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    host.answer(MessageButton::OK);
  });
  host.showMessage("text");
  EXPECT_NE(QGuiApplication::overrideCursor(), nullptr);
  host.setPointer(Pointer::Normal);
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(Windows, AFormThatCentresItselfStandsInTheMiddleAndTakesOverAsTheUserHadTheWindow) {
  FrmInHouse first(host);
  FrmAuto second(host);
  FrmPort dialog(host);
  second.OnLoad = [&] { second.centre(); };
  dialog.OnLoad = [&] { dialog.centre(); };
  const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
  const auto offCentre = [&](const Form& form) {
    return (screen.window(form)->frameGeometry().center() - room.center()).manhattanLength();
  };
  const auto takeOver = [&](Form& from, Form& to) {
    from.Hide();
    to.Show();
    run(250 * kMillisecond);
  };
  first.Show();
  run(250 * kMillisecond);
  screen.window(first)->move(0, 0);
  takeOver(first, second);
  EXPECT_LE(offCentre(second), 2);
  screen.window(second)->move(room.bottomRight() - QPoint(200, 200));
  dialog.Show();
  dialog.Label1.Show();
  for (int i = 0; i < dialog.Option1.count(); ++i) {
    dialog.Option1(i).Show();
  }
  run(250 * kMillisecond);
  EXPECT_LE(offCentre(dialog), 4) << "also when it has grown";
  dialog.Unload();

  screen.window(second)->showMaximized();
  takeOver(second, first);
  EXPECT_TRUE(screen.window(first)->isMaximized());
  screen.window(first)->showNormal();
  takeOver(first, second);
  EXPECT_FALSE(screen.window(second)->isMaximized());
}

}  // namespace
}  // namespace firmlane::test
