// How a flash run ends: what the page then says, which page comes next, and that the port and the timers are at rest. None of
// them clears TimedOut, by which the wizards know that a processor is still to be done. Each tells the outcome.
#pragma once

#include "link/receive_path.h"
#include "progress/debug_notes.h"
#include "progress/supervision.h"

namespace firmlane {

class Outcomes {
 public:
  Outcomes(FormHost& host, SerialPort& port, ReceivePath& receivePath, WizardInCharge& wizard, const DebugNotes& notes,
           RunState& state, Form1& form1, FrmAuto& frmAuto)
      : host_(host),
        port_(port),
        receivePath_(receivePath),
        wizard_(wizard),
        notes_(notes),
        state_(state),
        form1_(form1),
        frmAuto_(frmAuto) {}

  /// The unit has reported success.
  void Succeeded();
  /// The unit has reported a failure.
  void Refused();
  /// A receiver has not announced itself.
  void NoConnection();
  /// A Velarc has not announced itself, or a unit has not erased.
  void StoppedResponding();
  /// The image is out, and the unit says nothing to it.
  void NoVerdict();
  /// The run ends in no phase that says anything.
  void Undecided();

 private:
  void failWith(const char* text);
  void stopTimers();
  void clearBar();
  void offerAnotherTry();

  FormHost& host_;
  SerialPort& port_;
  ReceivePath& receivePath_;
  WizardInCharge& wizard_;
  const DebugNotes& notes_;
  RunState& state_;
  Form1& form1_;
  FrmAuto& frmAuto_;
};

}  // namespace firmlane
