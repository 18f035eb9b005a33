// What the connected unit says of itself: takes the answers of the version form's queue apart, into the run state and onto
// frmVersion. When and what to ask is not its question.
#pragma once

#include "state/frm_version.h"
#include "state/run_state.h"

namespace firmlane {

class VersionAnswers {
 public:
  VersionAnswers(RunState& state, FrmVersion& frmVersion) : state_(state), form_(frmVersion) {}

  /// Sets the versions back that an earlier unit has told: not every unit tells all of its own.
  void forgetVersions();

  /// Digests the next answer of IdQueue. One that is cut short is taken as far as it goes.
  void GetID2();

 private:
  class Answer;

  [[nodiscard]] bool velarc() const { return state_.ProductCode == "VC"; }
  void digest(const Answer& answer);
  bool readId(const Answer& answer);
  bool readVelarcDsp(const Answer& answer);
  void readWirelessDsp(const Answer& answer);
  bool readModel(const Answer& answer);
  void showId(const Answer& answer, bool qdr);
  bool readVersions(const Answer& answer);
  void readMiddle(const Answer& answer);
  void readSecondSection(const Answer& answer);

  RunState& state_;
  FrmVersion& form_;
};

}  // namespace firmlane
