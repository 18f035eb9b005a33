// Tells the record of what goes on how the unit's processors stand: which are selected, and the versions that the version table
// shows. That one is running, done or failed it hears from the flash run.
#pragma once

#include "wizard/auto/auto_wizard_setting.h"
#include "wizard/auto/product_parameters.h"

namespace firmlane {

class ProcessorReports {
 public:
  ProcessorReports(const AutoWizardSetting& setting, const WizardWindow& window, const ProductParameters& product)
      : setting_(setting), window_(window), product_(product) {}

  /// The processors as they are selected now; what has been done with them stays.
  void tellSelected();
  /// The unit has been read again: its versions are those after the update. One that was programmed and is still behind has
  /// failed.
  void tellReadAgain();

 private:
  [[nodiscard]] const VersionRow& row(const UpdateStep& step) const { return window_.rows[static_cast<std::size_t>(step.row)]; }
  [[nodiscard]] bool isThere(const UpdateStep& step) const;
  [[nodiscard]] ProcessorReport report(const UpdateStep& step) const;

  const AutoWizardSetting& setting_;
  const WizardWindow& window_;
  const ProductParameters& product_;
};

}  // namespace firmlane
