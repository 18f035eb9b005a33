// The classic wizard: one window, a page number, and one operation, the click of Next, that does the page's work and turns it.
// The auto wizards drive the same operation in code, with the window hidden. The pages stand in three files: first pages here,
// download_pages.cpp and flash_pages.cpp.
#pragma once

#include <string>

#include "personal/factory_line.h"
#include "platform/files.h"
#include "platform/screen.h"
#include "platform/serial_port.h"
#include "progress/leavable_wait.h"
#include "progress/wizard_in_charge.h"
#include "state/frm_port.h"
#include "state/frm_version.h"
#include "state/pages.h"
#include "state/small_forms.h"
#include "wizard/classic/operations.h"

namespace firmlane {

/// The forms that the pages touch besides Form1.
struct ClassicForms {
  FrmPort& frmPort;
  FrmVersion& frmVersion;
  FrmAuto& frmAuto;
  FrmVRCAuto& frmVRCAuto;
  FrmInHouse& frmInHouse;
  FrmDBUG& frmDBUG;
};

class PageEngine {
 public:
  PageEngine(FormHost& host, const Files& files, SerialPort& port, FactoryLine& line, WizardInCharge& wizard, Activity& activity,
             RunState& state, Form1& form1, const ClassicForms& forms, ClassicOperations operations);

  /// What the next click does is told by WizardPage. Any Failure on the way is shown in a box and ends the click; the page stays
  /// what it was at that moment.
  void Command3_Click();

  /// "More Options": back to the start, also from a page that waits for the port window.
  void Command1_Click();

  /// Brings back the page that asks what to do as it was when the product had just been chosen, whatever lists, downloads and
  /// runs have left on the form since.
  void returnToFirstTaskPage();

 private:
  struct Page;
  static const Page kPages[];

  void turnPage();
  void startFactoryUnit();
  void backToStart();

  // First pages.
  void showProducts();
  void takeProduct();
  void showFirstTaskPage();
  void clearPage();

  // Download pages: firmware and remote software.
  void leaveFetched(std::int16_t contactPage);
  void leaveFirmwareContact();
  void showFirmwareList();
  void leaveSoftwareContact();
  void hideContact();
  void registerContact();
  void downloadFirmware();
  void offerReleaseNotes();
  void downloadSoftware();
  void install();
  bool lineSelected(const std::string& request);
  bool releaseNotesWanted(const std::string& what);
  void startBar();

  // Flash pages.
  void chooseTask();
  void openAutoWizard(AutoForm& wizard);
  void fetchList(std::int16_t page, const std::function<void()>& fetch);
  void prepareFlash();
  [[nodiscard]] std::string readyText() const;
  void showVersions();
  void askPowerOff();
  void flash();
  void leaveRun();
  void loadFront();
  bool imageReady();
  void setTarget();
  void leaveFlash();
  void serialNumberClick();
  bool portChosen();
  void setBar(int value);

  FormHost& host_;
  const Files& files_;
  SerialPort& port_;
  FactoryLine& line_;
  WizardInCharge& wizard_;
  Activity& activity_;
  RunState& state_;
  Form1& form1_;
  ClassicForms forms_;
  ClassicOperations operations_;
  /// A click waits for the port window.
  LeavableWait askingForPort_;
  /// A click is in a flash run; it is never left.
  LeavableWait flashing_;
};

}  // namespace firmlane
