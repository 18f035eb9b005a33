#include "wizard/classic/start_up.h"

#include "state/pages.h"
#include "state/text.h"

namespace firmlane {

namespace {
constexpr const char* kWelcome =
    "Welcome to the Tolvex Firmlane\r\n\r\n"
    "Use this Wizard to:\r\n\r\n"
    "- Download the latest Vel-Arc or LWX remote control software\r\n"
    "   (The remote control software that runs on your computer)\r\n\r\n"
    "                                          OR \r\n\r\n"
    "- Download the latest Vel-Arc or LWX receiver firmware\r\n"
    "   (The internal operating system of your Vel-Arc or LWX300/500 receiver)\r\n\r\n"
    "                                          OR \r\n\r\n"
    "- Update your Vel-Arc or LWX receiver with the latest firmware\r\n"
    "   (Copy firmware from your computer to the Tolvex product)";
}  // namespace

/// What a product button does. A null caption stays, a null picture too.
struct StartUp::Product {
  CommandButton Form1::*button;
  int option;
  const char* firmwareCaption;
  const char* softwareCaption;
  const char* picture;
  bool olderVelarc;
};

const StartUp::Product StartUp::kProducts[] = {
    {&Form1::VRCButton, 0, "Upgrade Velarc firmware", "Upgrade Velarc remote control software", nullptr, false},
    {&Form1::VRColdButton, 0, nullptr, nullptr, nullptr, true},
    {&Form1::LWXButton, 1, "Upgrade LWX300/500 Receiver firmware", "Upgrade LWX300/500 Remote control software", "lwxpic", false},
    {&Form1::LWX300Button, 1, "Upgrade LWX300 Receiver firmware", "Upgrade LWX300 Remote control software", "lwxpic", false},
};

StartUp::StartUp(FormHost& host, SerialPort& port, ReceivePath& receive, RunState& state, Form1& form1, FrmInHouse& frmInHouse,
                 const BuildSwitches& switches)
    : host_(host), port_(port), receive_(receive), state_(state), form1_(form1), frmInHouse_(frmInHouse), switches_(switches) {
  form1.OnLoad = [this] { Form_Load(); };
  form1.OnQueryUnload = [this](bool& cancel) { Form_QueryUnload(cancel); };
  form1.OnUnload = [] { throw ProgramEnded{}; };
  form1.Command2.OnClick = [this] { form1_.Unload(); };
  for (const Product& product : kProducts) {
    (form1.*product.button).OnClick = [this, &product] { choose(product); };
  }
}

void StartUp::Form_Load() {
  state_.FactoryFirstPass = true;
  state_.InHouseBuild = switches_.inHouseBuild;
  state_.DebugView = switches_.debugView;
  state_.FactoryBuild = switches_.factoryBuild;
  form1_.centre();
  form1_.Watchdog.stop();
  form1_.Timer1.stop();
  SetupLCD();
  state_.CatalogueReady = false;
  state_.WizardPage = classic_page::kStart;
  form1_.lblTop.Show();
  form1_.lblTop.Caption = kWelcome;
  form1_.Option1(0).Value = true;
  for (int i = 0; i <= 2; ++i) {
    form1_.Option1(i).Hide();
  }
  form1_.frmUC.Hide();
  receive_.RxBuffer.clear();
  receive_.RxSearchStart = 1;
  receive_.FrameLength.fill();
  if (state_.FactoryBuild) {
    form1_.btnSN.Show();
    form1_.btnMic.Show();
    form1_.btnAuto.Hide();
  }
  if (state_.InHouseBuild) {
    form1_.Hide();
    frmInHouse_.Show();
  }
  form1_.Caption = "Tolvex Firmlane Version " + dotted(kVersionMajor, kVersionMinor);
}

void StartUp::choose(const Product& product) {
  form1_.Command3.Enable();
  form1_.Option2(product.option).Value = true;
  if (product.firmwareCaption != nullptr) {
    form1_.Option5.Caption = product.firmwareCaption;
    form1_.Option6.Caption = product.softwareCaption;
  }
  if (product.picture != nullptr) {
    form1_.Image2.Picture = product.picture;
  }
  if (product.olderVelarc) {
    state_.OldVelarc = true;
  }
  form1_.Command3.Click();
  if (product.olderVelarc) {
    state_.LegacyLink = true;
  }
  for (const Product& other : kProducts) {
    (form1_.*other.button).Hide();
  }
}

void StartUp::Form_QueryUnload(bool& cancel) {
  const MessageButton answer =
      host_.showMessageBox({.text = "Quit Tolvex Firmlane Now?", .title = "Warning", .buttons = MessageButtons::OKCancel});
  if (answer == MessageButton::Cancel) {
    cancel = true;
    return;
  }
  if (port_.IsOpen()) {
    port_.Close();
  }
}

}  // namespace firmlane
