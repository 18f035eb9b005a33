// Every form of the program in its window. With FIRMLANE_GALLERY set to a directory the windows are saved there as pictures.
#include <gtest/gtest.h>

#include <QPixmap>

#include "platform/widgets/widget_screen.h"
#include "real_ground.h"
#include "state/auto_form.h"
#include "state/form1.h"
#include "state/frm_port.h"
#include "state/frm_version.h"
#include "state/small_forms.h"

namespace firmlane::test {
namespace {

struct Gallery : RealGround, testing::Test {
  WidgetScreen screen{[](int number) { return number == 1 ? "ttyUSB0, FT232R USB UART" : number == 2 ? "ttyS0" : ""; }};
  FormHost host{queue, screen};
  Form1 form1{host};
  FrmPort frmPort{host};
  FrmVersion frmVersion{host};
  FrmAuto frmAuto{host};
  FrmVRCAuto frmVRCAuto{host};
  FrmRecover frmRecover{host};
  FrmAbout frmAbout{host};
  FrmInHouse frmInHouse{host};
  FrmDBUG frmDBUG{host};
  NewSerial newserial{host};

  Gallery() { screen.attach(host); }

  void settle() {
    run(30 * kMillisecond);
    screen.refresh();
    run(10 * kMillisecond);
  }
};

TEST_F(Gallery, EveryFormHasAWindowThatFindsItsControls) {
  const QString directory = qEnvironmentVariable("FIRMLANE_GALLERY");
  for (Form* form : host.forms()) {
    ASSERT_NO_THROW(form->Show()) << form->name();
    settle();
    EXPECT_TRUE(screen.window(*form)->isVisible()) << form->name();
    if (!directory.isEmpty()) {
      screen.window(*form)->grab().save(directory + "/" + QString::fromStdString(form->name()) + ".png");
    }
    form->Hide();
  }
}

TEST_F(Gallery, AWindowGrowsForATextThatNeedsMoreRoom) {
  form1.Show();
  settle();
  const int before = screen.window(form1)->height();
  std::string text;
  for (int line = 0; line < 34; ++line) {
    text += "One more line of a page's text, and one that is long enough to be wrapped at the edge of the page\r";
  }
  form1.lblTop.Caption = text.substr(0, 1200);
  form1.frmUC.Show();
  form1.ProgressBar1.Show();
  settle();
  const QWidget* label = (*screen.window(form1))["lblTop"];
  EXPECT_GT(screen.window(form1)->height(), before);
  EXPECT_GE(label->height(), label->heightForWidth(label->width()));
}

}  // namespace
}  // namespace firmlane::test
