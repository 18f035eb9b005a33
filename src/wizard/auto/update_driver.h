// Turns the wizard's selections into work below it: the firmware set comes down, one selected processor is programmed. Both press
// Next of the classic wizard in code and have no protocol of their own.
#pragma once

#include "wizard/auto/auto_wizard_setting.h"
#include "wizard/auto/page_texts.h"
#include "wizard/auto/product_parameters.h"

namespace firmlane {

class UpdateDriver {
 public:
  UpdateDriver(const AutoWizardSetting& setting, const AutoWizardTies& ties, const WizardWindow& window, PageTexts& texts,
               const ProductParameters& product)
      : setting_(setting), ties_(ties), window_(window), texts_(texts), product_(product) {}

  /// Downloads the files of the chosen set one after the other, and puts them in place together, under its name. Returns whether
  /// that is done; the first file that fails ends it, told.
  [[nodiscard]] bool GetFirmware();
  /// Programs the first selected processor and clears its selection; leaves it when the run has timed out. Returns when the run
  /// is over, at once when nothing is selected.
  void UpdateReceiver();

  /// Selects again what a run has taken back that then came to nothing; nothing when there was none.
  void selectUnfinished();
  void forgetUnfinished() { unfinished_.clear(); }

  /// Makes everything ready for the run of one processor: `processorNo` as the user knows it, `option` the index of
  /// Form1.Option4.
  void choose(const char* processorNo, int option);

 private:
  [[nodiscard]] std::vector<CheckBox*> selectedBoxes() const;

  const AutoWizardSetting& setting_;
  const AutoWizardTies& ties_;
  const WizardWindow& window_;
  PageTexts& texts_;
  const ProductParameters& product_;
  /// What was selected when a run began that timed out.
  std::vector<CheckBox*> unfinished_;
};

}  // namespace firmlane
