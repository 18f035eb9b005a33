// What the flash runs tell the debug view. With the debug view switched off nothing is written.
#pragma once

#include <string>

#include "state/run_state.h"
#include "state/small_forms.h"

namespace firmlane {

class DebugNotes {
 public:
  DebugNotes(const RunState& state, FrmDBUG& frmDBUG) : state_(state), frmDBUG_(frmDBUG) {}

  /// The stage that a run is in.
  void stage(const std::string& text) const { write(frmDBUG_.lblStage, text); }
  /// Number of bytes sent to the front panel.
  void bytes(int count) const { write(frmDBUG_.lblBytes, std::to_string(count)); }
  /// Error messages or comments.
  void errors(const std::string& text) const { write(frmDBUG_.lblErrors, text); }
  /// The three together.
  void note(const std::string& stageText, int count, const std::string& errorText) const {
    stage(stageText);
    bytes(count);
    errors(errorText);
  }
  void lengthBytes(int high, int low) const {
    write(frmDBUG_.LblL1, std::to_string(high));
    write(frmDBUG_.lblL2, std::to_string(low));
  }
  /// The largest value sent to the front panel so far.
  void highestSent(int value) const { write(frmDBUG_.lblHI, std::to_string(value)); }

 private:
  void write(Label& label, const std::string& text) const {
    if (state_.DebugView) {
      label.Caption = text;
    }
  }

  const RunState& state_;
  FrmDBUG& frmDBUG_;
};

}  // namespace firmlane
