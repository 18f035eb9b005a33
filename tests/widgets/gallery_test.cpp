// Every page of the program in its window, looked at by what must hold for each. With FIRMLANE_GALLERY set to a directory the
// windows are saved there as pictures, light and dark; QT_SCALE_FACTOR=2 makes those of a fine screen.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QFontDatabase>
#include <QPixmap>
#include <QPushButton>
#include <set>

#include "forms/counter1.h"
#include "page_checks.h"
#include "platform/widgets/digit_display.h"
#include "platform/widgets/outcome_band.h"
#include "walk.h"

namespace firmlane::test {
namespace {

/// Another desktop: another font, another size, the dark.
struct Writing {
  const char* name;
  const char* family;
  int points;
};
constexpr Writing kWritings[] = {
    {"usual", "", 0}, {"large", "", 18}, {"huge", "", 28}, {"serif", "DejaVu Serif", 11}, {"other", "Noto Sans", 11}};

QPalette dark() {
  QPalette palette(QColor(0x3a, 0x3d, 0x40), QColor(0x2b, 0x2e, 0x31));
  palette.setColor(QPalette::Base, QColor(0x1f, 0x21, 0x24));
  palette.setColor(QPalette::AlternateBase, QColor(0x26, 0x29, 0x2c));
  palette.setColor(QPalette::Highlight, QColor(0x3d, 0xae, 0xe9));
  palette.setColor(QPalette::HighlightedText, QColor(0x10, 0x14, 0x18));
  palette.setColor(QPalette::PlaceholderText, QColor(0x9a, 0xa0, 0xa6));
  palette.setColor(QPalette::Link, QColor(0x6c, 0xc4, 0xf4));
  return palette;
}

class Written : public testing::TestWithParam<Writing> {
 protected:
  void SetUp() override {
    if (*GetParam().family != 0 && !QFontDatabase::families().contains(QLatin1String(GetParam().family))) {
      GTEST_SKIP() << "no font " << GetParam().family;
    }
    QFont font = usual_;
    if (*GetParam().family != 0) {
      font.setFamily(QLatin1String(GetParam().family));
    }
    if (GetParam().points != 0) {
      font.setPointSize(GetParam().points);
    }
    QApplication::setFont(font);
  }
  void TearDown() override { QApplication::setFont(usual_); }

  /// Nothing is wrong with it, and it is kept as a picture.
  void examine(const std::string& name, QWidget& window) {
    const std::string number = std::to_string(++pages_ + 100).substr(1);
    keep(number + "-" + name, window);
    EXPECT_EQ(faultsOf(window), "") << number << " " << name;
  }

 private:
  static void keep(const std::string& name, QWidget& window) {
    const QString directory = qEnvironmentVariable("FIRMLANE_GALLERY");
    if (directory.isEmpty()) {
      return;
    }
    const QPalette light = QApplication::palette();
    for (const bool isDark : {false, true}) {
      QApplication::setPalette(isDark ? dark() : light);
      QCoreApplication::processEvents();
      window.grab().save(QStringLiteral("%1/%2-%3-%4x-%5.png")
                             .arg(directory, QLatin1String(GetParam().name), isDark ? "dark" : "light")
                             .arg(qRound(window.devicePixelRatioF()))
                             .arg(QString::fromStdString(name)));
    }
    QApplication::setPalette(light);
    QCoreApplication::sendPostedEvents();
  }

  QFont usual_ = QApplication::font();
  int pages_ = 0;
};

std::string nameOf(const testing::TestParamInfo<Writing>& info) { return info.param.name; }

class Updates : public Written {};
INSTANTIATE_TEST_SUITE_P(Gallery, Updates, testing::ValuesIn(kWritings), nameOf);

TEST_P(Updates, NothingIsWrongWithAnyPageOfAnUpdate) {
  struct Case {
    Line line;
    const char* model;
    const char* button;
  };
  for (const Case& one : {Case{Line::Wireless, "lwx52", "LWXButton"}, Case{Line::Velarc2, "velarc2", "VRCButton"}}) {
    Walk walk(one.line, one.model, {.productButton = one.button});
    walk.onPage = [this, &one](const std::string& form, QWidget& window) { examine(one.model + ("-" + form), window); };
    EXPECT_EQ(walk.play(), Player::Outcome::Succeeded);
  }
}

/// The forms as no update shows them: what else can stand on the main form, and the windows beside it.
class Posed : public Written {
 protected:
  Ground ground;
  WidgetScreen screen{[](int number) { return number == 1 ? "ttyUSB0, FT232R USB UART" : number == 2 ? "ttyS0" : ""; }};
  FormHost host{ground.queue, screen};
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

  Posed() { screen.attach(host); }

  void show(const std::initializer_list<Control*> controls) {
    for (Control* control : controls) {
      control->Show();
    }
  }
  QWidget& windowOf(Form& form) {
    form.Show();
    settleWindows(screen);
    return *screen.window(form);
  }
};
INSTANTIATE_TEST_SUITE_P(Gallery, Posed, testing::ValuesIn(kWritings), nameOf);

TEST_P(Posed, NothingIsWrongWithAnyOtherPage) {
  struct Pose {
    const char* name;
    Form& form;
    std::function<void()> strike;
  };
  const std::string longText =
      "Before a Receiver's FLASH RAM can be upgraded, you must make sure that only one Receiver is connected to your computer "
      "and "
      "that there are no other Receivers connected on the network\r\rPlease turn off the power switch on your Receiver now and "
      "click Next";
  const Pose poses[] = {
      {"contact", form1,
       [&] {
         form1.lblTop.Caption = "If you would like to be notified, please enter your contact information below.";
         show({&form1.lblFirst, &form1.txtFirst, &form1.lblLast, &form1.txtLast, &form1.lblEmail, &form1.txtEmail});
       }},
      {"versions", form1,
       [&] {
         form1.List1.Lines = {"Version 5.02, released 3/14/2012", "Version 5.01, released 1/2/2011"};
         form1.List1.ListIndex = 1;
         show({&form1.List1, &form1.btnVRCrelnotef, &form1.Command1});
       }},
      {"fetching", form1,
       [&] {
         form1.lblTop.Hide();
         form1.ProgressBar1.Value = 40;
         form1.lblStatus.Caption = "Connected";
         show({&form1.lblConnect, &form1.lblStatus, &form1.ProgressBar1});
       }},
      {"tasks", form1,
       [&] {
         show({&form1.Option1(0), &form1.Option1(1), &form1.Option1(2), &form1.Option1(3), &form1.Option2(0)});
       }},
      {"processor", form1,
       [&] {
         form1.lblTop.Caption = longText;
         form1.lblOutcome.tell(OutcomeKind::Caution, "The server answered 404 Not Found for RFSL.s19");
         show({&form1.frmUC});
       }},
      {"factory", form1,
       [&] {
         form1.lblTop.Caption = longText + "\r\r" + longText;
         form1.lblResetSerial.Caption = "Turn off the receiver and turn it back on";
         show({&form1.frmModel, &form1.lblResetSerial, &form1.lblSerial, &form1.txtNum, &form1.btnSerial, &form1.btnSN,
               &form1.btnMic, &form1.frmUC, &form1.ProgressBar1});
       }},
      {"failed", frmAuto,
       [&] {
         frmAuto.lblMain.Caption = "Now programming Processor 3\r\r\r\r";
         frmAuto.lblOutcome.tell(OutcomeKind::Failure,
                                 "The unit has stopped responding. Please try programming the FLASH again.\r\rClick Next to try "
                                 "again");
         frmAuto.prgTotal.Value = 30;
         show({&frmAuto.prgTotal, &frmAuto.lblTotal});
       }},
      {"restart", frmAuto,
       [&] {
         frmAuto.lblMain.Caption =
             "Firmlane has finished downloading firmware.\r\n\r\nThe downloaded firmware has been saved to "
             "your hard drive.\r\n\r\n                                      Or";
         frmAuto.lblBottom.Caption = "If you would like to update the firmware in your receiver now,\r\nclick Next";
         show({&frmAuto.lblBottom});
       }},
      {"port", frmPort, [&] {}},
      {"port-manual", frmPort,
       [&] {
         show({&frmPort.Label1, &frmPort.Command1});
         for (int i = 0; i < frmPort.Option1.count(); ++i) {
           frmPort.Option1(i).Show();
         }
       }},
      {"recover", frmRecover,
       [&] {
         frmRecover.lblMain.Caption =
             "Unable to connect to your receiver\r\n\r\nPlease check your connections and COM port and make "
             "sure your receiver is turned on.\r\n\r\nIf you are still unable to connect, click the "
             "'Recover' button.";
       }},
      {"version", frmVersion, [&] { frmVersion.lblSN.Caption = "1024"; }},
      {"about", frmAbout,
       [&] {
         frmAbout.lblVersion.Caption = "LWX Firmlane Version 5.0 Build 9";
         frmAbout.lblCopyright.Caption = "Copyright 2012";
       }},
      {"in-house", frmInHouse, [&] {}},
      {"debug", frmDBUG, [&] { frmDBUG.lblStage.Caption = "Waiting for Receiver response"; }},
      {"serial", newserial, [&] { newserial.Text1.Text = "4711"; }},
  };
  for (const Pose& pose : poses) {
    windowOf(pose.form);
    pose.strike();
    examine(pose.name, windowOf(pose.form));
    pose.form.Unload();
  }
}

TEST_P(Posed, APageThatTheScreenHasNoRoomForScrollsAboveItsButtons) {
  std::string text;
  for (int line = 0; line < 60; ++line) {
    text += "One more line of a page's text, and one that is long enough to be wrapped at the edge of the page\r";
  }
  form1.Show();
  form1.lblTop.Caption = text;
  form1.frmUC.Show();
  QWidget& window = windowOf(form1);
  EXPECT_EQ(faultsOf(window), "");
  EXPECT_EQ(window.frameGeometry().height(), window.screen()->availableSize().height()) << "it grows as far as it can";
}

struct Checked : testing::Test {
  Ground ground;
  WidgetScreen screen{nullptr};
  FormHost host{ground.queue, screen};
  FrmAbout form{host};
  Checked() {
    form.Show();
    form.lblVersion.Caption = "Version";
    form.lblCopyright.Caption = "Copyright";
    settleWindows(screen);
  }
};

/// The checks of the gallery can fail: each of these is found.
TEST_F(Checked, WhatIsWrongWithAWindowIsFound) {
  FormWindow& window = *screen.window(form);
  ASSERT_EQ(faultsOf(window), "");
  QPushButton stray(&window);
  stray.setObjectName("stray");
  stray.setFocusPolicy(Qt::ClickFocus);
  stray.setGeometry(-5, 0, 4, 4);
  stray.show();
  window["lblVersion"]->setFixedHeight(3);
  const std::string faults = faultsOf(window);
  for (const char* fault :
       {"stray (QPushButton) is out of sight", "stray (QPushButton) is cut", "stray (QPushButton) has no name",
        "stray (QPushButton) is not reached by Tab", "lblVersion (QLabel) is cut"}) {
    EXPECT_NE(faults.find(fault), std::string::npos) << fault << " in\n" << faults;
  }
}

TEST_F(Checked, TheAboutBoxStandsInTheCornerOfTheWindowBelowIt) {
  screen.attach(host);
  FrmInHouse below(host);
  form.Unload();
  below.Show();
  form.Show();
  settleWindows(screen);
  EXPECT_EQ(screen.window(form)->pos(), screen.window(below)->pos());
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

TEST(Gallery, TheDigitDisplayDrawsEachDigitInItsPlace) {
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
