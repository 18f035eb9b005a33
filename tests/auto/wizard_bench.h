// Both auto wizards over fakes of what they drive: the classic wizard behind Form1.Command3, the version readout, the port window
// and the downloads. The fakes do what a test says and write down what was asked of them.
#pragma once

#include <string>
#include <vector>

#include "wizard/auto/recovery.h"
#include "wizard/auto/velarc2.h"
#include "wizard/auto/wireless.h"
#include "world.h"

namespace firmlane::test {

/// A record of a released system.
SystemRecord system(const std::string& version, const std::string& dsp, const std::string& hub, const std::string& rf,
                    const std::string& front);

/// The controls on the window that matter to its user, in one line; "-" behind one that is disabled.
std::string shown(const AutoForm& form);

struct WizardBench : World {
  WizardBench();

  /// Shows the window with these options and goes to the options page.
  void open(AutoForm& form, bool download, bool update);
  /// The user clicks, and all that follows happens.
  void click(Control& control);
  /// The user clicks after a span, from within whatever runs then.
  void clickLater(Micros span, Control& control);

  // How the fakes behave.
  /// What the unit says of itself, put into the run state; a silent unit when empty.
  std::function<void()> unit;
  Micros unitAnswersAfter = 300 * kMillisecond;
  bool versionPortOpens = true;
  /// The fetch of the list: how long it takes, what it leaves.
  Micros fetchTakes = 500 * kMillisecond;
  std::function<void()> fetched;
  /// A flash run; returning leaves it as succeeded.
  std::function<void()> flash = [] {};
  std::function<bool()> download = [] { return true; };
  /// The port that the user chooses; closes the window without one when 0.
  int portChosen = 3;

  /// The fetch that goes on, until the wizard gives it up.
  LeavableWait fetching;

  /// What was asked of the fakes, in order.
  std::vector<std::string> log;

  FirmwareSet set{files};
  AutoWizardSetting setting{host, wizard, files, set, state, form1, frmPort, frmVersion, frmRecover, frmDBUG, activity};
  AutoWizardTies ties{.GetFirmware2 = [this] { return getFirmware(); },
                      .StartDoc = [this](const std::string& path) { log.push_back("open " + path); },
                      .abandonList = [this] { fetching.leave(); },
                      .returnToFirstTaskPage = [this] { log.emplace_back("Form1 as at first"); }};
  WirelessWizard wireless{setting, ties, frmAuto};
  Velarc2Wizard velarc2{setting, ties, frmVRCAuto};
  Recovery recovery{state, frmRecover, [this] { wireless.LaunchFAQ(); }};

 private:
  void pressNextOfForm1();
  void fetch();
  bool getFirmware();
  void loadVersion();
};

}  // namespace firmlane::test
