// "Copy details": where it stands, and what it puts on the clipboard.
#include <QClipboard>
#include <QGuiApplication>
#include <QPushButton>
#include <QTimer>

#include "platform/widgets/widget_screen.h"
#include "real_ground.h"
#include "sheet.h"
#include "state/small_forms.h"

namespace firmlane::test {
namespace {

struct CopyDetails : RealGround, testing::Test {
  CopyDetails() {
    screen.attach(host);
    screen.setDetails([] { return std::string("Firmlane record 1\n"); });
  }
  /// Presses it where it can be seen in this window; false when it cannot.
  static bool press(const QWidget& window) {
    QGuiApplication::clipboard()->clear();
    for (QPushButton* button : window.findChildren<QPushButton*>()) {
      if (button->text() == "Copy details" && button->isVisible()) {
        button->click();
        return QGuiApplication::clipboard()->text() == "Firmlane record 1\n";
      }
    }
    return false;
  }

  WidgetScreen screen{[](int) { return std::string(); }};
  FormHost host{queue, screen};
};

TEST_F(CopyDetails, ACriticalBoxHasItAndStaysAQuestionDoesNot) {
  for (const bool critical : {true, false}) {
    bool pressed = false;
    QTimer::singleShot(60, [&] {
      pressed = press(*screen.box());
      EXPECT_TRUE(screen.box()->isVisible());
      host.answer(MessageButton::OK);
    });
    host.showMessageBox({.text = "text", .icon = critical ? MessageIcon::Critical : MessageIcon::Question});
    EXPECT_EQ(pressed, critical);
  }
}

TEST_F(CopyDetails, ABandHasItAsLongAsItTellsAFailure) {
  struct Page : Form {
    explicit Page(FormHost& formHost) : Form(formHost, "Page", "") {}
    OutcomeLabel lblOutcome{*this, "lblOutcome"};
  } page(host);
  page.Show();
  for (const OutcomeKind kind : {OutcomeKind::Good, OutcomeKind::Failure, OutcomeKind::Caution}) {
    page.lblOutcome.tell(kind, "words");
    screen.refresh();
    run(50 * kMillisecond);
    EXPECT_EQ(press(*screen.window(page)), kind == OutcomeKind::Failure);
  }
}

TEST_F(CopyDetails, TheAboutBoxHasIt) {
  FrmAbout about(host);
  about.Show();
  run(50 * kMillisecond);
  EXPECT_TRUE(press(*screen.window(about)));
}

}  // namespace
}  // namespace firmlane::test
