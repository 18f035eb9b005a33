// The system version file: which released systems the program has seen, and in row 0 which set of firmware files lies on disk.
// It is the wizard's memory between runs and all that it knows without a network.
#pragma once

#include "wizard/auto/auto_wizard_setting.h"
#include "wizard/auto/product_parameters.h"

namespace firmlane {

/// A row of the file: the fields of a record one behind the other, kSystemRowBytes in all.
Bytes rowOf(const SystemRecord& record);

/// No row of the system version file matches the unit.
inline constexpr std::int16_t kNoSystem = 99;

class SystemFile {
 public:
  SystemFile(const AutoWizardSetting& setting, const WizardWindow& window, const ProductParameters& product)
      : setting_(setting), window_(window), product_(product) {}

  /// File into table, when a set that was left half in place has come to its end. A missing file is made; rows behind the end of
  /// a short one stay as they are, but a row 0 that was only picked: what is on disk, the disk alone says. A file that cannot be
  /// opened is told in a box, and the table stays.
  void ReadSysFile();
  /// Table into file, always all rows, but for row 0: until the set that the user has picked is there, the file goes on naming
  /// the one that is. A file that cannot be written is told in a box and stays as it was.
  void SaveSysFile();
  /// Takes the systems of the update list into the table and makes the chosen one row 0.
  void UpdateFileSysVer();
  /// Looks up the unit's versions, as the version table shows them; sets MatchedSystem.
  void ShowSysVer();

  /// Whether any image of the product's sets lies on disk. Who put them there does not matter, unless they are what is left of a
  /// set that could not take its place.
  [[nodiscard]] bool imagesThere() const;
  /// The set on disk; from the user's pick on, the one that was picked.
  [[nodiscard]] SystemRecord& setOnDisk() { return table()[0]; }
  /// The row that ShowSysVer found, nullptr for none.
  [[nodiscard]] const SystemRecord* matched();

 private:
  using Table = std::array<SystemRecord, kSystemFileRows>;
  [[nodiscard]] Table& table() { return setting_.state.*product_.sysFile; }
  [[nodiscard]] std::string path() const { return setting_.files.path(product_.sysFileName); }
  void take(ByteSpan content);
  void create();
  void forgetSet();
  void fail(const std::string& doing, const Failure& failure);
  [[nodiscard]] int firstFreeRow();
  [[nodiscard]] bool knows(const SystemRecord& system);
  [[nodiscard]] bool unitRuns(const SystemRecord& system) const;

  const AutoWizardSetting& setting_;
  const WizardWindow& window_;
  const ProductParameters& product_;
  bool broken_ = false;  // a set is half in its place
  bool picked_ = false;  // row 0 is what the user has picked, and need not be on disk
};

}  // namespace firmlane
