// Every form of the program in its window. With FIRMLANE_GALLERY set to a directory the windows are saved there as pictures.
#include <gtest/gtest.h>

#include <QPixmap>
#include <set>

#include "forms/counter1.h"
#include "platform/widgets/digit_display.h"
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

TEST_F(Gallery, TheAboutBoxStandsInTheCornerOfTheMainForm) {
  form1.Show();
  frmAbout.Show();
  settle();
  EXPECT_EQ(screen.window(frmAbout)->pos(), screen.window(form1)->pos());
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

/// A number as the digit display draws it.
QImage drawn(std::int16_t number) {
  Counter1 counter;
  counter.SetBigdigits(number);
  DigitDisplay display;
  display.setDigits({{{counter.imgCount2.Picture, counter.imgCount2.Visible},
                      {counter.imgCount1.Picture, counter.imgCount1.Visible},
                      {counter.imgCount0.Picture, counter.imgCount0.Visible}}});
  display.resize(display.sizeHint());
  return display.grab().toImage();
}

std::string digitAt(const QImage& display, int place) {
  const int width = display.width() / 3;
  const QImage digit = display.copy(place * width, 0, width, display.height());
  return {reinterpret_cast<const char*>(digit.constBits()), static_cast<std::size_t>(digit.sizeInBytes())};
}

TEST_F(Gallery, TheDigitDisplayDrawsEachDigitInItsPlace) {
  std::set<std::string> digits;
  for (std::int16_t number = 0; number < 10; ++number) {
    digits.insert(digitAt(drawn(number), 2));
  }
  EXPECT_EQ(digits.size(), 10U) << "each digit has a picture of its own";
  const std::string dark = digitAt(drawn(7), 0);
  const std::string zero = digitAt(drawn(0), 2);
  EXPECT_FALSE(digits.contains(dark));
  EXPECT_EQ(digitAt(drawn(7), 1), dark);
  EXPECT_EQ(digitAt(drawn(42), 0), dark);
  EXPECT_EQ(digitAt(drawn(42), 1), digitAt(drawn(4), 2));
  EXPECT_EQ(digitAt(drawn(100), 0), digitAt(drawn(1), 2));
  EXPECT_EQ(digitAt(drawn(100), 1) + digitAt(drawn(100), 2), zero + zero);
}

}  // namespace
}  // namespace firmlane::test
