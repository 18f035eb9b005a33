// Programs a front panel: tells it the length of the image, then sends the code in batches, each when the panel asks for it, and
// at its word the vector table. The image stands in memory.
#pragma once

#include "images/image_stream.h"
#include "link/short_delay.h"
#include "platform/serial_port.h"
#include "progress/debug_notes.h"

namespace firmlane {

class FrontPanel {
 public:
  FrontPanel(FormHost& host, SerialPort& port, ShortDelay& delay, Supervision& supervision, WizardInCharge& wizard,
             const DebugNotes& notes, RunState& state, Form1& form1, FrmAuto& frmAuto)
      : host_(host),
        port_(port),
        delay_(delay),
        supervision_(supervision),
        wizard_(wizard),
        notes_(notes),
        state_(state),
        form1_(form1),
        frmAuto_(frmAuto),
        stream_(host, supervision, wizard, form1) {}

  /// Sends FrontCodeBytes as two seven-bit groups, then FrontImage. Opens the port if it is closed. Throws Failure when the port
  /// fails before the first batch. Leaves Watchdog off.
  void ProgramFront();

  /// Sends FrontImage. When it is empty or too long, or the port fails, tells the user and returns, with Sending and the timers
  /// as they were. A panel that asks for nothing for a minute raises TimedOut; one that has given its verdict ends the stream
  /// sooner, and the verdict stands.
  void DumpFront();

 private:
  void prepareStream();
  bool stream();
  bool awaitRequest();
  void sendCodeBatch();
  void sendVectorBatch();
  void sendBatch();
  void sendValue(int position);
  void finish();

  FormHost& host_;
  SerialPort& port_;
  ShortDelay& delay_;
  Supervision& supervision_;
  WizardInCharge& wizard_;
  const DebugNotes& notes_;
  RunState& state_;
  Form1& form1_;
  FrmAuto& frmAuto_;
  ImageStream stream_;

  int offset_ = 0;  // digits of the image consumed so far
  int vectorBatches_ = 0;
  int highestSent_ = 0;
};

}  // namespace firmlane
