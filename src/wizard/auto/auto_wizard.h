// The page state machine of the auto wizards: what Next, Back and "Program another" do on each page of AutoPage. It drives the
// classic wizard behind it by WizardPage, the option controls of Form1 and clicks of Form1.Command3 in code. Which product it
// serves stands in its parameters alone.
#pragma once

#include <functional>
#include <string>

#include "progress/leavable_wait.h"
#include "wizard/auto/auto_wizard_setting.h"
#include "wizard/auto/overall_progress.h"
#include "wizard/auto/page_texts.h"
#include "wizard/auto/processor_reports.h"
#include "wizard/auto/product_parameters.h"
#include "wizard/auto/system_file.h"
#include "wizard/auto/unit_reading.h"
#include "wizard/auto/update_driver.h"
#include "wizard/auto/version_table.h"

namespace firmlane {

class AutoWizard {
 public:
  /// Ties the events of the window to its operations. The parameters outlive the wizard.
  AutoWizard(const AutoWizardSetting& setting, AutoWizardTies ties, const WizardWindow& window, const ProductParameters& product);
  AutoWizard(const AutoWizard&) = delete;
  AutoWizard& operator=(const AutoWizard&) = delete;
  ~AutoWizard() = default;

  /// Runs the handler of the current page; returns when the wizard waits on a page, or has been sent back from a wait.
  void btnNext_Click();
  void btnBack_Click();
  void btnMore_Click();
  void btnRelNote_Click() { LaunchRelNote(); }
  void VersionList_Click();

  /// Programs the first selected processor; see UpdateDriver.
  void UpdateReceiver() { driver_.UpdateReceiver(); }
  void LaunchRelNote();
  /// Opens the questions and answers page; the same for both products.
  void LaunchFAQ();

  [[nodiscard]] VersionTable& table() { return table_; }
  [[nodiscard]] UpdateDriver& driver() { return driver_; }

 private:
  struct Page;
  static const Page kPages[];

  void Form_Load();
  void options_Click();
  void tieEvents();
  void next();
  void takeCharge();
  void forgetUnit();
  void clearOutcome();

  // Next, by page.
  void nextOnWelcome();
  void nextOnOptions();
  void nextOnUnit();
  void nextOnSystems();
  void nextOnDownloaded();
  void nextOnProcessorDone();
  void nextOnAllDone();
  void nextOnDownloadOnly();
  void nextOnRestart();

  // Back, by page.
  void backToMainForm();
  void backToWelcome();
  void backToOptions();

  [[nodiscard]] bool readUnit();
  [[nodiscard]] std::string versionText();
  void takeListOfSystems();
  void fetchList(const LeavableWait::Stay& stay);
  [[nodiscard]] bool await(const LeavableWait::Stay& stay, const std::function<bool()>& done);
  void walkForm1ToItsList(const LeavableWait::Stay& stay);
  void offerSystems();
  [[nodiscard]] bool systemPicked() const;
  void takeSystemPicked();
  void takeSetOnDisk();
  void tellNoSet();
  void decideWhatToProgram();
  [[nodiscard]] bool confirmReflash();
  void programOne();
  void showVerdict();
  void tellVerdict();
  void showOptions();

  AutoWizardSetting setting_;
  AutoWizardTies ties_;
  WizardWindow window_;
  const ProductParameters& product_;
  RunState& state_;
  AutoForm& form_;

  OverallProgress progress_;
  PageTexts texts_;
  SystemFile file_;
  VersionTable table_;
  UpdateDriver driver_;
  UnitReading reading_;
  ProcessorReports reports_;

  /// The wait for the list of systems and for the user's pick. Back leaves it.
  LeavableWait listWait_;
  /// The user has pressed Next where a list did not come.
  bool tryAgain_ = false;
  /// A list of this product has come before.
  bool listKnown_ = false;
};

}  // namespace firmlane
