// Reads which firmware the connected unit runs: asks for the port if none is chosen, loads frmVersion and waits for it. The 30 s
// that a unit has to answer are owned here; after them the user recovers, chooses the port again, or ends the program.
#pragma once

#include "wizard/auto/auto_wizard_setting.h"
#include "wizard/auto/page_texts.h"
#include "wizard/auto/product_parameters.h"

namespace firmlane {

class UnitReading {
 public:
  UnitReading(const AutoWizardSetting& setting, AutoForm& form, PageTexts& texts, const ProductParameters& product)
      : setting_(setting), form_(form), texts_(texts), product_(product) {}

  enum class Outcome {
    /// The versions are in the run state; frmVersion is still loaded.
    Read,
    /// The unit stays silent and the user goes on without a reading.
    Recover,
    /// No port was chosen, or it could not be opened. The user knows, and the next reading asks for the port anew.
    NoPort,
  };
  /// Reads a unit that has just come to the wizard.
  Outcome readUnit();

  /// Reads the unit again after it was programmed, without a time limit. False when the port could not be opened or was lost;
  /// the user knows.
  [[nodiscard]] bool readAgain();

  /// Unloads frmVersion, which closes its port.
  void finish();

  /// Clears the flags of the readout.
  void clearFlags();

  /// Tick of Watch: the time is up.
  void Watch_Timer();

 private:
  [[nodiscard]] bool choosePort();
  [[nodiscard]] bool loadVersion();
  [[nodiscard]] bool readOnce();
  [[nodiscard]] bool isRead() const;
  [[nodiscard]] bool stillAsking() const;
  void awaitVersions();
  void askUser();

  const AutoWizardSetting& setting_;
  AutoForm& form_;
  PageTexts& texts_;
  const ProductParameters& product_;
};

}  // namespace firmlane
