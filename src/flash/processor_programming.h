// Between the flash run and the image senders: which file goes to which processor, and by which sender. The front panels, whose
// image goes by a dialogue, have FrontPanel.
#pragma once

#include "images/image_sender.h"

namespace firmlane {

/// Sets the page when a unit has erased its FLASH and its image comes next.
void showSending(Supervision& supervision, const WizardInCharge& wizard, Form1& form1);

class ProcessorProgramming {
 public:
  ProcessorProgramming(const Files& files, SerialPort& port, ImageSender& sender, Supervision& supervision,
                       WizardInCharge& wizard, const RunState& state, Form1& form1)
      : files_(files), port_(port), sender_(sender), supervision_(supervision), wizard_(wizard), state_(state), form1_(form1) {}

  /// Makes sure, before the unit is touched, that there is something to send to FlashTarget: a run that finds no file has erased
  /// the processor already. Throws Failure when the file is missing, unreadable or empty. Front panels have a loader that tells.
  void requireImage() const;

  // Each needs the port open and returns when the image has gone out, or when its sender has told the user why not.

  /// The DSP, and the whole of an older Velarc.
  void ProgramFlash();
  void ProgramNewHub();
  /// RF1 and RF2, which share one image.
  void ProgramRF();

 private:
  void begin();
  void sendText();
  [[nodiscard]] std::string imagePath() const;

  const Files& files_;
  SerialPort& port_;
  ImageSender& sender_;
  Supervision& supervision_;
  WizardInCharge& wizard_;
  const RunState& state_;
  Form1& form1_;
};

}  // namespace firmlane
