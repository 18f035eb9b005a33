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

  void keep(const Form& form, const std::string& name) {
    screen.refresh();
    run(20 * kMillisecond);
    ASSERT_NE(screen.window(form), nullptr);
    if (const QString directory = qEnvironmentVariable("FIRMLANE_GALLERY"); !directory.isEmpty()) {
      screen.window(form)->grab().save(directory + "/" + QString::fromStdString(name) + ".png");
    }
  }
  void show(Form& form, const std::string& name) {
    form.Show();
    keep(form, name);
    form.Hide();
  }
};

TEST_F(Gallery, EveryFormHasAWindowThatFindsItsControls) {
  for (Form* form : host.forms()) {
    ASSERT_NO_THROW(show(*form, form->name())) << form->name();
  }
}

TEST_F(Gallery, PagesOfTheMainForm) {
  form1.Show();
  form1.lblTop.Caption =
      "Welcome to the Tolvex Firmlane\r\n\r\nUse this Wizard to:\r\n\r\n- Download the latest Vel-Arc or LWX remote control "
      "software\r\n   (The remote control software that runs on your computer)\r\n\r\n                                          "
      "OR "
      "\r\n\r\n- Download the latest Vel-Arc or LWX receiver firmware\r\n   (The internal operating system of your Vel-Arc or "
      "LWX300/500 receiver)\r\n\r\n                                          OR \r\n\r\n- Update your Vel-Arc or LWX receiver "
      "with "
      "the latest firmware\r\n   (Copy firmware from your computer to the Tolvex product)";
  form1.lblFAQ.OnClick = [] {};
  keep(form1, "Form1-welcome");

  form1.lblTop.Caption = "Please select the product you would like to upgrade:";
  form1.VRCButton.Show();
  form1.VRColdButton.Show();
  form1.LWXButton.Show();
  form1.Command3.Disable();
  form1.lblFAQ.Hide();
  form1.Command5.Hide();
  keep(form1, "Form1-product");

  form1.VRCButton.Hide();
  form1.VRColdButton.Hide();
  form1.LWXButton.Hide();
  form1.Command3.Enable();
  form1.lblTop.Caption = "What would you like to do?";
  form1.Option5.Caption = "Upgrade LWX300/500 Receiver firmware";
  form1.Option6.Caption = "Upgrade LWX300/500 Remote control software";
  form1.frmFS.Show();
  form1.imgGUI.Show();
  form1.imgLWX.Show();
  keep(form1, "Form1-task");
  form1.imgGUI.Picture = "VRCGui";
  form1.imgLWX.Picture = "VRCBox";
  keep(form1, "Form1-task-velarc");

  form1.frmFS.Hide();
  form1.imgGUI.Hide();
  form1.imgLWX.Hide();
  for (int i = 0; i < 4; ++i) {
    form1.Option1(i).Show();
  }
  form1.frmUC.Show();
  form1.ProgressBar1.Show();
  form1.ProgressBar1.Value = 42;
  form1.lblProgressInfo.Show();
  form1.lblProgressInfo.Caption = "Downloaded 51200 bytes (42%)";
  keep(form1, "Form1-options");

  for (int i = 0; i < 4; ++i) {
    form1.Option1(i).Hide();
  }
  form1.frmUC.Hide();
  form1.List1.Show();
  form1.List1.AddItem("Velarc V5.01 - DSP image");
  form1.List1.AddItem("Velarc V5.02 - DSP image");
  form1.List1.ListIndex = 1;
  for (Control* control : std::initializer_list<Control*>{&form1.lblFirst, &form1.txtFirst, &form1.lblLast, &form1.txtLast,
                                                          &form1.lblEmail, &form1.txtEmail, &form1.Command1}) {
    control->Show();
  }
  keep(form1, "Form1-list");
}

TEST_F(Gallery, PagesOfTheWizard) {
  frmAuto.Show();
  frmAuto.lblMain.Caption =
      "There are 2 main steps in upgrading your LWX receiver:\r\r   1. Downloading firmware from Tolvex to this computer\r   2. "
      "Updating your receiver with the new firmware\r\rIf anything goes wrong during updating, dont worry, it's OK!\rYou can "
      "just "
      "start the wizard over again, your receiver will not be damaged.\r\r\nVERY IMPORTANT BEFORE CONTINUING:\r\nDipswitch #7 "
      "MUST "
      "be down (off) on your LWX receiver\r\n                               AND\r\nOnly 1 LWX receiver can be connected to your "
      "computer";
  keep(frmAuto, "frmAuto-welcome");
  frmAuto.lblMain.Caption = "Please select what you would like to do";
  frmAuto.ChkOffline.Caption =
      "Download latest firmware from Tolvex to this PC.  (Your computer must be connected to the internet.)";
  frmAuto.chkReceiver.Caption =
      "Update receiver with new firmware from this PC.  (Your receiver must be connected to this computer and your receiver must "
      "be "
      "turned on.)";
  for (Control* control :
       std::initializer_list<Control*>{&frmAuto.ChkOffline, &frmAuto.chkReceiver, &frmAuto.imgDL, &frmAuto.imgFlash}) {
    control->Show();
  }
  frmAuto.chkReceiver.Value = 1;
  keep(frmAuto, "frmAuto-options");
  for (Control* control :
       std::initializer_list<Control*>{&frmAuto.ChkOffline, &frmAuto.chkReceiver, &frmAuto.imgDL, &frmAuto.imgFlash}) {
    control->Hide();
  }
  frmAuto.VersionList.Show();
  frmAuto.VersionList.AddItem("2.41   March 2019   Adds the new hopping table");
  frmAuto.VersionList.AddItem("2.40   June 2018   First release for the 500 line");
  frmAuto.lblReset.Show();
  frmAuto.lblReset.Caption = "Turn off your receiver and turn it back on to continue";
  frmAuto.Progress1.Show();
  frmAuto.Progress1.Value = 60;
  frmAuto.prgTotal.Show();
  frmAuto.prgTotal.Value = 30;
  frmAuto.lblTotal.Show();
  frmAuto.lblPage.Caption = "3";
  frmAuto.btnNext.Disable();
  keep(frmAuto, "frmAuto-list");
  frmAuto.Hide();
  show(frmVRCAuto, "frmVRCAuto-page");
}

TEST_F(Gallery, Dialogs) {
  frmPort.Show();
  keep(frmPort, "frmPort-start");
  frmPort.Label1.Show();
  frmPort.Command1.Show();
  for (int i = 0; i < kPortCount; ++i) {
    frmPort.Option1(i).Show();
  }
  keep(frmPort, "frmPort-manual");
  frmPort.Hide();
  frmRecover.Label1.OnClick = [] {};
  frmRecover.Show();
  frmRecover.Label1.Caption = "Click here to launch the FAQ at www.tolvex.example/Mic_FAQ_LWX_index.htm in your browser";
  frmRecover.lblMain.Caption =
      "Your receiver did not answer.\r\rMake sure that it is connected and turned on, and that no other program uses the port.";
  keep(frmRecover, "frmRecover-page");
  frmRecover.Hide();
  frmAbout.Show();
  frmAbout.lblVersion.Caption = "LWX Firmlane Version 5.0 Build 9";
  frmAbout.lblCopyright.Caption = "Copyright 2024 the Firmlane authors";
  keep(frmAbout, "frmAbout-page");
  frmAbout.Hide();
  screen.messageBoxShown({.text = "Error opening port: There is no serial port COM 4 (#2)",
                          .icon = MessageIcon::Critical,
                          .buttons = MessageButtons::OKCancel});
  run(20 * kMillisecond);
  if (const QString directory = qEnvironmentVariable("FIRMLANE_GALLERY"); !directory.isEmpty()) {
    screen.box()->grab().save(directory + "/box.png");
  }
  screen.messageBoxClosed();
}

}  // namespace
}  // namespace firmlane::test
