// The version table: for each processor the version in the chosen set and the one in the unit, the decision what to program, and
// the verdict afterwards. The labels of the window are the store; they stay hidden.
#pragma once

#include <array>
#include <string>

#include "wizard/auto/auto_wizard_setting.h"
#include "wizard/auto/overall_progress.h"
#include "wizard/auto/product_parameters.h"

namespace firmlane {

class VersionTable {
 public:
  VersionTable(const AutoWizardSetting& setting, const WizardWindow& window, OverallProgress& progress,
               const ProductParameters& product)
      : setting_(setting), window_(window), progress_(progress), product_(product) {}

  /// Lists the released systems for the user's pick.
  void LoadVersionList();
  /// Current column from the display names of the update list. A name without a version is told in a box.
  void ParseVersions();
  /// Current column from the chosen system.
  void ParseVersionsSys();
  /// The unit's column from what the readout left in the run state.
  void LoadVersions();
  void ClearVersions();
  /// Selects the processors that are behind the chosen set.
  void CompareVersions();
  /// Sets FinalCheckFailed from the unit's column and the set on disk, which is the set just used, and closes the overall
  /// progress.
  void CompareVersionsFinal();
  /// The selection column.
  void HideUpdate() { setUpdateVisible(false); }
  void ShowUpdate() { setUpdateVisible(true); }
  /// Shows the whole table; no page does.
  void ShowTable();

  /// Selects every processor that this wizard programs.
  void selectAll();
  /// Selects those that the unit has and its link can reach.
  void selectReachable();
  /// Takes back selections that the unit cannot have.
  void dropUnreachable();
  /// What the unit runs that is older than row 0 of the system file, such as "DSP 2.29 (the set has 2.31)"; empty when all is up
  /// to date. The final check does not ask that of every processor.
  [[nodiscard]] std::string stillBehind() const;
  [[nodiscard]] bool anySelected() const;

 private:
  void setUpdateVisible(bool visible);
  [[nodiscard]] bool reachable(const ProcessorRow& row) const;
  [[nodiscard]] bool failsFinalCheck(const ProcessorRow& row, const Label& inUnit, const SystemRecord& set) const;
  [[nodiscard]] std::string unitVersion(const ProcessorRow& row) const;
  void readDisplayNames();

  const AutoWizardSetting& setting_;
  const WizardWindow& window_;
  OverallProgress& progress_;
  const ProductParameters& product_;
  std::array<std::string, 11> FirmwareNames_;
};

}  // namespace firmlane
